# kestryctl: everything that it does is in a library, which the tests link too.
find_package(CLI11 REQUIRED)
find_package(fmt REQUIRED)

# What two programs of one user say to each other. It needs no library, and neither does the program
# that people start: what it links is loaded anew for each command.
add_library(KestryHandOver STATIC
    HandedCommand.cpp
    LocalClient.cpp
    LocalMessage.cpp
    LocalSocket.cpp
    StandardStreams.cpp
)
target_include_directories(KestryHandOver PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(KestryHandOver PUBLIC KestryCoreGround PRIVATE kestry_warnings)

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
    Instants.cpp
    LedgerCheck.cpp
    Listings.cpp
    MetricsReport.cpp
    Months.cpp
    OutputFile.cpp
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
    PUBLIC KestryCore KestryHandOver
    PRIVATE CLI11::CLI11 fmt::fmt ICU::uc kestry_warnings
)

include(GNUInstallDirs)
add_executable(kestryctl_files kestryctlFiles.cpp)
set_target_properties(kestryctl_files PROPERTIES
    OUTPUT_NAME kestryctl-files
    RUNTIME_OUTPUT_DIRECTORY ${PROJECT_BINARY_DIR}/libexec/kestry
)
target_link_libraries(kestryctl_files PRIVATE KestryCommandLine kestry_warnings)
install(TARGETS kestryctl_files DESTINATION ${CMAKE_INSTALL_LIBEXECDIR}/kestry)

add_executable(kestryctl kestryctl.cpp)
add_dependencies(kestryctl kestryctl_files)
file(RELATIVE_PATH toLibexec /prefix/${CMAKE_INSTALL_BINDIR} /prefix/${CMAKE_INSTALL_LIBEXECDIR})
target_compile_definitions(kestryctl
    PRIVATE KESTRY_WHOLE_PROGRAM="${toLibexec}/kestry/kestryctl-files")
target_link_libraries(kestryctl PRIVATE KestryHandOver kestry_warnings)
install(TARGETS kestryctl)
install(FILES ${PROJECT_SOURCE_DIR}/docs/kestryctl.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)

# A program that has everything in itself starts in half the time, where the system has the archives.
include(CheckCXXSourceCompiles)
set(CMAKE_REQUIRED_LINK_OPTIONS -static)
check_cxx_source_compiles("#include <string>\nint main() { return std::string().size(); }"
    KESTRY_CAN_LINK_STATICALLY)
unset(CMAKE_REQUIRED_LINK_OPTIONS)
if(KESTRY_CAN_LINK_STATICALLY AND NOT KESTRY_SANITIZE)
    target_link_options(kestryctl PRIVATE -static)
endif()
