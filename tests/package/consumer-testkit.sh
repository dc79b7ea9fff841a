#!/bin/bash
# Tests of somebody else's host application and of somebody else's protocol: the kit's examples, built against nothing but the
# installed copy. And the contract tests notice what a protocol does wrong.
. "$(dirname "$0")/common.sh"

folder=$(new_folder consumer-testkit)
cp "$tree/tests/package/consumer-testkit/CMakeLists.txt" "$tree"/testkit/examples/*.{cpp,h} "$folder"
cd "$folder"
cmake -B build -G Ninja -DCMAKE_PREFIX_PATH="$prefix"
cmake --build build
for test in UploadViewTest StartPageTest SignInTest MemoryProtocolTest; do
    runs_from "$(realpath "$prefix")" build/$test
    build/$test
done

# breaks CHANGE TEST: with a change, in sed's words, the protocol no longer passes a test.
breaks() {
    cp "$tree/testkit/examples/MemoryProtocol.cpp" .
    sed -i "$1" MemoryProtocol.cpp
    ! cmp -s "$tree/testkit/examples/MemoryProtocol.cpp" MemoryProtocol.cpp || fail "Nothing is what \"$1\" looks for"
    cmake --build build --target MemoryProtocolTest >/dev/null
    ! build/MemoryProtocolTest --gtest_brief=1 --gtest_filter="Clouds/$2/*" || fail "$2 passes after \"$1\""
}
breaks 's/^    Schedule();$/    waiting.back().step();\n&/' CallbackTest.EveryRequestIsAnsweredOnceOutsideOfAnyCallOnTheOwnThread
breaks 's/^\( *\)std::apply(.*/\1done(id, result, std::decay_t<Payload>()...);\n&/' \
    CallbackTest.EveryRequestIsAnsweredOnceOutsideOfAnyCallOnTheOwnThread
breaks 's/id.isEmpty() ? FreeName(name)/id.isEmpty() ? name/' UploadTest.ATakenNameGetsANumberAndTheFirstStaysUntouched
