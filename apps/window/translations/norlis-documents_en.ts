<?xml version="1.0" encoding="utf-8"?>
<!DOCTYPE TS>
<TS version="2.1" language="en" sourcelanguage="en">
<context>
    <name>Norlis::Window::DetailsPane</name>
    <message numerus="yes">
        <source>%n documents</source>
        <translation>
            <numerusform>%n document</numerusform>
            <numerusform>%n documents</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Norlis::Window::DocumentCommands</name>
    <message numerus="yes">
        <source>%n documents were removed.</source>
        <translation>
            <numerusform>%n document was removed.</numerusform>
            <numerusform>%n documents were removed.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Norlis::Window::DownloadCommands</name>
    <message numerus="yes">
        <source>%n documents are up to date here.</source>
        <translation>
            <numerusform>%n document is up to date here.</numerusform>
            <numerusform>%n documents are up to date here.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Norlis::Window::DropHint</name>
    <message numerus="yes">
        <source>Drop to upload %n document(s)</source>
        <translation>
            <numerusform>Drop to upload %n document</numerusform>
            <numerusform>Drop to upload %n documents</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Norlis::Window::MainWindow</name>
    <message numerus="yes">
        <source>%n document(s) have changes that are not in the cloud. Sign out anyway?</source>
        <translation>
            <numerusform>%n document has changes that are not in the cloud. Sign out anyway?</numerusform>
            <numerusform>%n documents have changes that are not in the cloud. Sign out anyway?</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Norlis::Window::Questions</name>
    <message numerus="yes">
        <source>Remove %n documents from the cloud?</source>
        <translation>
            <numerusform>Remove %n document from the cloud?</numerusform>
            <numerusform>Remove %n documents from the cloud?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Upload %n files?</source>
        <translation>
            <numerusform>Upload %n file?</numerusform>
            <numerusform>Upload %n files?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Open %n documents?</source>
        <translation>
            <numerusform>Open %n document?</numerusform>
            <numerusform>Open %n documents?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>Use the cloud’s versions of %n documents?</source>
        <translation>
            <numerusform>Use the cloud’s version of %n document?</numerusform>
            <numerusform>Use the cloud’s versions of %n documents?</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n document(s) have changes that are not in the cloud. These will be in the files on this computer only.</source>
        <translation>
            <numerusform>%n document has changes that are not in the cloud. These will be in the file on this computer only.</numerusform>
            <numerusform>%n documents have changes that are not in the cloud. These will be in the files on this computer only.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Norlis::Window::RemovalUndo</name>
    <message numerus="yes">
        <source>It is too late to undo: %n document(s) had already been removed.</source>
        <translation>
            <numerusform>It is too late to undo: %n document had already been removed.</numerusform>
            <numerusform>It is too late to undo: %n documents had already been removed.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Norlis::Window::StatusLine</name>
    <message numerus="yes">
        <source>%n document(s)</source>
        <translation>
            <numerusform>%n document</numerusform>
            <numerusform>%n documents</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%1 of %n document(s)</source>
        <translation>
            <numerusform>%1 of %n document</numerusform>
            <numerusform>%1 of %n documents</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n selected, %1</source>
        <translation>
            <numerusform>%n selected, %1</numerusform>
            <numerusform>%n selected, %1</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>trying again in %n s</source>
        <translation>
            <numerusform>trying again in %n s</numerusform>
            <numerusform>trying again in %n s</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>The cloud has not answered for %n s</source>
        <translation>
            <numerusform>The cloud has not answered for %n s</numerusform>
            <numerusform>The cloud has not answered for %n s</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n removal(s) waiting</source>
        <translation>
            <numerusform>%n removal waiting</numerusform>
            <numerusform>%n removals waiting</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Norlis::Window::TransferNotice</name>
    <message numerus="yes">
        <source>%n failed</source>
        <translation>
            <numerusform>%n failed</numerusform>
            <numerusform>%n failed</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Norlis::Window::Transfers</name>
    <message numerus="yes">
        <source>%n document(s) uploaded</source>
        <translation>
            <numerusform>%n document uploaded</numerusform>
            <numerusform>%n documents uploaded</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n document(s) downloaded</source>
        <translation>
            <numerusform>%n document downloaded</numerusform>
            <numerusform>%n documents downloaded</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>no progress for %n s</source>
        <translation>
            <numerusform>no progress for %n s</numerusform>
            <numerusform>no progress for %n s</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Norlis::Window::TransfersPanel</name>
    <message numerus="yes">
        <source>%n failed</source>
        <translation>
            <numerusform>%n failed</numerusform>
            <numerusform>%n failed</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n waiting for the cloud</source>
        <translation>
            <numerusform>%n waiting for the cloud</numerusform>
            <numerusform>%n waiting for the cloud</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n canceled</source>
        <translation>
            <numerusform>%n canceled</numerusform>
            <numerusform>%n canceled</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Norlis::Window::UnsentChanges</name>
    <message numerus="yes">
        <source>%n documents have changes that are not in the cloud.</source>
        <translation>
            <numerusform>%n document has changes that are not in the cloud.</numerusform>
            <numerusform>%n documents have changes that are not in the cloud.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n documents with changes of yours are no longer in the cloud.</source>
        <translation>
            <numerusform>%n document with changes of yours is no longer in the cloud.</numerusform>
            <numerusform>%n documents with changes of yours are no longer in the cloud.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>%n of them was (were) changed in the cloud, too.</source>
        <translation>
            <numerusform>%n of them was changed in the cloud, too.</numerusform>
            <numerusform>%n of them were changed in the cloud, too.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Norlis::Window::UploadCommands</name>
    <message numerus="yes">
        <source>%n of the files are not PDF documents and were not uploaded.</source>
        <translation>
            <numerusform>%n of the files is not a PDF document and was not uploaded.</numerusform>
            <numerusform>%n of the files are not PDF documents and were not uploaded.</numerusform>
        </translation>
    </message>
    <message numerus="yes">
        <source>There are more than %n PDF documents in the folder.</source>
        <translation>
            <numerusform>There is more than %n PDF document in the folder.</numerusform>
            <numerusform>There are more than %n PDF documents in the folder.</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Norlis::Window::VersionsDialog</name>
    <message numerus="yes">
        <source>Do the same for the %n other(s)</source>
        <translation>
            <numerusform>Do the same for the other one</numerusform>
            <numerusform>Do the same for the %n others</numerusform>
        </translation>
    </message>
</context>
<context>
    <name>Texts</name>
    <message numerus="yes">
        <source>%1 and %n more</source>
        <translation>
            <numerusform>%1 and %n more</numerusform>
            <numerusform>%1 and %n more</numerusform>
        </translation>
    </message>
</context>
</TS>
