# kestryctl: everything that it does is in a library, which the tests link too.
find_package(CLI11 REQUIRED)
find_package(fmt REQUIRED)

add_library(KestryCommandLine STATIC
    CommandContext.cpp
    CommandExecution.cpp
    CommandHelp.cpp
    CommandOnFiles.cpp
    CommandParser.cpp
    CommandProgram.cpp
    CommandService.cpp
    CommandSyntax.cpp
    CommandSyntaxReading.cpp
    CommandSyntaxRecords.cpp
    CommandSyntaxSync.cpp
    CommandWords.cpp
    CompletionScript.cpp
    CompletionTable.cpp
    CsvFile.cpp
    Durations.cpp
    HandedCommand.cpp
    Instants.cpp
    LedgerCheck.cpp
    Listings.cpp
    LocalClient.cpp
    LocalMessage.cpp
    LocalSocket.cpp
    MetricsReport.cpp
    Months.cpp
    PlainText.cpp
    RecordCommands.cpp
    RecordLookup.cpp
    SessionCommands.cpp
    SessionListing.cpp
    StatusReport.cpp
    SyncCommands.cpp
    ValueText.cpp
)
target_include_directories(KestryCommandLine PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
target_compile_definitions(KestryCommandLine PRIVATE KESTRY_VERSION="${PROJECT_VERSION}")
target_link_libraries(KestryCommandLine
    PUBLIC KestryCore
    PRIVATE CLI11::CLI11 fmt::fmt ICU::uc kestry_warnings
)

add_executable(kestryctl kestryctl.cpp)
target_link_libraries(kestryctl PRIVATE KestryCommandLine kestry_warnings)
install(TARGETS kestryctl)
include(GNUInstallDirs)
install(FILES ${PROJECT_SOURCE_DIR}/docs/kestryctl.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
