find_package(Python3 REQUIRED COMPONENTS Interpreter)

add_executable(kestry_command_line_tests
    CommandExecutionTest.cpp
    CommandHandOverTest.cpp
    CommandHelpTest.cpp
    CommandParserTest.cpp
    CommandProgramTest.cpp
    CommandServiceTest.cpp
    CompletionTableTest.cpp
    CsvFileTest.cpp
    DurationsTest.cpp
    HandedCommandTest.cpp
    InstantsTest.cpp
    LedgerCheckTest.cpp
    LocalClientTest.cpp
    LocalMessageTest.cpp
    LocalSocketTest.cpp
    ManualTest.cpp
    MetricsReportTest.cpp
    MonthsTest.cpp
    OutputFileTest.cpp
    PlainTextTest.cpp
    RecordCommandsTest.cpp
    RecordLookupTest.cpp
    SessionCommandsTest.cpp
    SessionListingTest.cpp
    StatusReportTest.cpp
    SyncCommandsTest.cpp
)
target_include_directories(kestry_command_line_tests PRIVATE ../support)
target_link_libraries(kestry_command_line_tests
    PRIVATE KestryCommandLine kestry_warnings GTest::gmock GTest::gtest_main)
set_source_files_properties(ManualTest.cpp
    PROPERTIES COMPILE_DEFINITIONS KESTRY_MANUAL="${PROJECT_SOURCE_DIR}/docs/kestryctl.1")
gtest_discover_tests(kestry_command_line_tests
    DISCOVERY_MODE PRE_TEST PROPERTIES LABELS command-line)

# The program itself, as people and scripts start it: real files, real processes, real signals.
add_test(NAME kestryctl
    COMMAND Python3::Interpreter ${CMAKE_CURRENT_SOURCE_DIR}/kestryctlTest.py
        $<TARGET_FILE:kestryctl>)
set_tests_properties(kestryctl PROPERTIES LABELS "command-line;end-to-end" TIMEOUT 300)

# Completing in the shells themselves.
add_test(NAME kestryctl_completion
    COMMAND Python3::Interpreter ${CMAKE_CURRENT_SOURCE_DIR}/completionTest.py
        $<TARGET_FILE:kestryctl>)
set_tests_properties(kestryctl_completion
    PROPERTIES LABELS "command-line;end-to-end" TIMEOUT 300)

# The manual page, as the programs that show it judge it.
foreach(judge "groff -ww -b -z -man -Tutf8" "mandoc -T lint -W warning")
    separate_arguments(words UNIX_COMMAND "${judge}")
    list(GET words 0 name)
    add_test(NAME kestryctl_manual_${name} COMMAND ${words} ${PROJECT_SOURCE_DIR}/docs/kestryctl.1)
    # Warnings leave the status of the first at 0.
    set_tests_properties(kestryctl_manual_${name}
        PROPERTIES LABELS command-line FAIL_REGULAR_EXPRESSION "kestryctl.1:")
endforeach()
