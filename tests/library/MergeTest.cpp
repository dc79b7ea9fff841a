#include "FilesManagerBench.h"

#include <optional>

namespace Norlis::Test {

namespace {

using Previews = std::map<FileInfo::PreviewSize, ioPath>;

class MergeTest : public FilesManagerTest {
protected:
    MergeTest()
    {
        held = RecordOf("a");
        held->SetPath(ioPath("/a.pdf"), "hash of /a.pdf", "sync");
        manager->Add(held);
        Events();
    }

    /// A record that equals the held one.
    std::shared_ptr<FileInfo> Same() const
    {
        return std::make_shared<FileInfo>(*held);
    }

    std::shared_ptr<FileInfo> held;
};

TEST_F(MergeTest, NullRecordIsIgnored)
{
    manager->Update(nullptr);
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(MergeTest, UnknownIdIsNeitherAddedNorReportedNorHashed)
{
    manager->Update(RecordOf("A"));
    EXPECT_THAT(Events(), IsEmpty());
    EXPECT_THAT(Ids(), ElementsAre("a"));
    EXPECT_THAT(hashes->asked, IsEmpty());
}

TEST_F(MergeTest, EqualRecordIsReportedAndItsPathHashedAllTheSame)
{
    fileSystem->calls.clear();
    manager->Update(Same());
    EXPECT_THAT(Events(), ElementsAre("FileUpdated(\"a\")", "FileUpdated(0)"));
    EXPECT_THAT(fileSystem->calls, ElementsAre("NormalizePath(/a.pdf)"));
    EXPECT_THAT(hashes->asked, ElementsAre("/a.pdf"));
    EXPECT_EQ(held->GetPath(), ioPath("/a.pdf"));
    EXPECT_EQ(held->GetMd5Hash(), "hash of /a.pdf");
}

TEST_F(MergeTest, IndexIsThePositionCountedFromTheFront)
{
    Add({"b", "c"});
    manager->Update(Same());
    EXPECT_THAT(Events(), ElementsAre("FileUpdated(\"a\")", "FileUpdated(2)"));
}

TEST_F(MergeTest, OfTwoRecordsWithTheIdOnlyTheOneNearerTheFrontIsMerged)
{
    const auto nearer = RecordOf("a");
    manager->Add(nearer);
    Add({"b"});
    const auto incoming = Same();
    incoming->SetIsSyncingInProgress(true);

    manager->Update(incoming);

    EXPECT_THAT(Events(), ElementsAre("FileUpdated(\"a\")", "FileUpdated(1)"));
    EXPECT_TRUE(nearer->IsSyncingInProgress());
    EXPECT_FALSE(held->IsSyncingInProgress());
}

TEST_F(MergeTest, HeldObjectStaysAndTakesTheCloudPart)
{
    const auto incoming =
        std::make_shared<FileInfo>(FileInfo::CloudInfo("a", "new.pdf", 5, false, {}, {}, {}, 9, "new cloud hash"));
    incoming->SetPath(ioPath("/a.pdf"), "");

    manager->Update(incoming);

    EXPECT_EQ(held->GetRedactableCloudInfo()->GetFileName(), "new.pdf");
    EXPECT_EQ(held->GetRedactableCloudInfo()->GetSize(), 5u);
    EXPECT_EQ(held->GetRedactableCloudInfo()->GetMd5Hash(), "new cloud hash");
    EXPECT_EQ(manager->GetDocumentName(0), "new.pdf");
    EXPECT_EQ(held->GetId(), "a");
}

TEST_F(MergeTest, ChangedFileAtTheSamePathIsRehashed)
{
    hashes->hashes["/a.pdf"] = "changed on disk";
    const auto incoming = Same();
    manager->Update(incoming);
    EXPECT_EQ(held->GetMd5Hash(), "changed on disk");
    EXPECT_EQ(held->GetPath(), ioPath("/a.pdf"));
    EXPECT_EQ(held->GetCloudHashBeforeChange(), "sync");
}

TEST_F(MergeTest, IncomingHashIsNotBelieved)
{
    const auto incoming = Same();
    incoming->SetPath(ioPath("/a.pdf"), "made up");
    manager->Update(incoming);
    EXPECT_EQ(held->GetMd5Hash(), "hash of /a.pdf");
}

TEST_F(MergeTest, OtherPathIsTakenInItsNormalizedForm)
{
    fileSystem->normalize = [](const std::string& path) { return "/n" + path; };
    const auto incoming = Same();
    incoming->SetPath(ioPath("/b.pdf"), "", "other sync");

    manager->Update(incoming);

    EXPECT_EQ(held->GetPath(), ioPath("/n/b.pdf"));
    EXPECT_EQ(held->GetMd5Hash(), "hash of /n/b.pdf");
    EXPECT_EQ(held->GetCloudHashBeforeChange(), "sync");
}

TEST_F(MergeTest, PathsAreComparedAsTheyAreGiven)
{
    // The normalised form equals the held path, yet the given one differs: the path is set, and with it the size read.
    fileSystem->normalize = [](const std::string&) { return "/a.pdf"; };
    hashes->hashes["/a.pdf"] = held->GetMd5Hash();
    const auto incoming = Same();
    incoming->SetPath(ioPath("/A.PDF"), "");
    manager->Update(incoming);
    EXPECT_EQ(held->GetPath(), ioPath("/a.pdf"));

    // The given path equals the held one, and so does the hash: a different normalised form is not taken.
    fileSystem->normalize = [](const std::string&) { return "/normalized.pdf"; };
    hashes->hashes["/normalized.pdf"] = held->GetMd5Hash();
    manager->Update(Same());
    EXPECT_EQ(held->GetPath(), ioPath("/a.pdf"));
}

TEST_F(MergeTest, RecordWithoutLocalCopyClearsTheHeldPath)
{
    manager->Update(RecordOf("a"));
    EXPECT_TRUE(held->GetPath().empty());
    EXPECT_EQ(held->GetMd5Hash(), "");
    EXPECT_THAT(hashes->asked, ElementsAre(""));
}

TEST_F(MergeTest, EmptyPreviewsLeaveTheHeldOnes)
{
    const Previews previews = {{FileInfo::PreviewSize::Small, ioPath("/s")}};
    const auto incoming = Same();
    held->SetPreviewsSet(previews);
    manager->Update(incoming);
    EXPECT_EQ(held->GetPreviewsSet(), previews);
}

TEST_F(MergeTest, DifferentPreviewsReplaceTheHeldOnesWhole)
{
    using Size = FileInfo::PreviewSize;
    const Previews variants[] = {
        {{Size::Small, ioPath("/other")}, {Size::Large, ioPath("/l")}},
        {{Size::Small, ioPath("/s")}},
        {{Size::Medium, ioPath("/s")}, {Size::Large, ioPath("/l")}},
        {{Size::Small, ioPath("/s")}, {Size::Medium, ioPath("/m")}, {Size::Large, ioPath("/l")}},
    };
    for (const auto& previews : variants) {
        held->SetPreviewsSet({{Size::Small, ioPath("/s")}, {Size::Large, ioPath("/l")}});
        const auto incoming = Same();
        incoming->SetPreviewsSet(previews);
        manager->Update(incoming);
        EXPECT_EQ(held->GetPreviewsSet(), previews);
    }
}

TEST_F(MergeTest, SyncingFlagIsAlwaysCopied)
{
    for (const bool flag : {true, false}) {
        const auto incoming = Same();
        incoming->SetIsSyncingInProgress(flag);
        manager->Update(incoming);
        EXPECT_EQ(held->IsSyncingInProgress(), flag);
    }
}

TEST_F(MergeTest, RecordWithoutCloudPartThrowsBeforeAnythingChanges)
{
    const auto incoming = Same();
    incoming->GetRedactableCloudInfo().reset();
    incoming->SetPath(ioPath("/b.pdf"), "");
    incoming->SetIsSyncingInProgress(true);
    fileSystem->calls.clear();

    EXPECT_THROW(manager->Update(incoming), std::bad_optional_access);

    EXPECT_THAT(Events(), IsEmpty());
    EXPECT_EQ(held->GetPath(), ioPath("/a.pdf"));
    EXPECT_FALSE(held->IsSyncingInProgress());
    EXPECT_THAT(fileSystem->calls, IsEmpty());
}

TEST_F(MergeTest, HeldRecordWithoutCloudPartIsGivenOne)
{
    const auto incoming = Same();
    held->GetRedactableCloudInfo().reset();
    manager->Update(incoming);
    EXPECT_EQ(manager->GetDocumentName(0), "a.pdf");
}

TEST_F(MergeTest, CollaboratorsExceptionComesWhenTheCloudPartIsAlreadyMerged)
{
    const auto incoming = std::make_shared<FileInfo>(FileInfo::CloudInfo("a", "new.pdf", 5, false, {}, {}, {}, 9, ""));
    fileSystem->normalize = [](const std::string&) -> std::string { throw std::runtime_error("no such drive"); };
    EXPECT_THROW(manager->Update(incoming), std::runtime_error);
    EXPECT_EQ(held->GetRedactableCloudInfo()->GetFileName(), "new.pdf");
    EXPECT_THAT(Events(), IsEmpty());
}

TEST_F(MergeTest, NothingIsWrittenToTheStore)
{
    store->calls.clear();
    manager->Update(Same());
    EXPECT_THAT(store->calls, IsEmpty());
}

TEST_F(MergeTest, IncomingRecordIsNotChanged)
{
    hashes->hashes["/a.pdf"] = "changed on disk";
    const auto incoming = Same();
    manager->Update(incoming);
    EXPECT_EQ(incoming->GetMd5Hash(), "hash of /a.pdf");
}

TEST_F(MergeTest, RecordMayBeUpdatedWithItself)
{
    manager->Update(held);
    EXPECT_THAT(Events(), ElementsAre("FileUpdated(\"a\")", "FileUpdated(0)"));
}

} // namespace

} // namespace Norlis::Test
