find_package(Python3 REQUIRED COMPONENTS Interpreter)

add_executable(kestry_command_line_tests
    CommandExecutionTest.cpp
    CommandHelpTest.cpp
    CommandParserTest.cpp
    CommandProgramTest.cpp
    DurationsTest.cpp
    InstantsTest.cpp
    LedgerCheckTest.cpp
    PlainTextTest.cpp
    RecordCommandsTest.cpp
    RecordLookupTest.cpp
    SessionCommandsTest.cpp
    StatusReportTest.cpp
)
target_link_libraries(kestry_command_line_tests
    PRIVATE KestryCommandLine kestry_warnings GTest::gmock GTest::gtest_main)
gtest_discover_tests(kestry_command_line_tests
    DISCOVERY_MODE PRE_TEST PROPERTIES LABELS command-line)

# The program itself, as people and scripts start it: real files, real processes, real signals.
add_test(NAME kestryctl
    COMMAND Python3::Interpreter ${CMAKE_CURRENT_SOURCE_DIR}/kestryctlTest.py
        $<TARGET_FILE:kestryctl>)
set_tests_properties(kestryctl PROPERTIES LABELS "command-line;end-to-end" TIMEOUT 300)
