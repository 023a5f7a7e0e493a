if(NOT KESTRY_APPLICATION)
    return()
endif()

find_package(Qt6 6.4 REQUIRED COMPONENTS Test)

add_executable(kestry_application_tests
    ActivityAngleTest.cpp
    AppDelegateTest.cpp
    AppStateTest.cpp
    AppearanceBridgeTest.cpp
    AppearanceSettingsTest.cpp
    ApplicationInfoTest.cpp
    ApplicationServerTest.cpp
    ApplicationTestMain.cpp
    DesktopSettingsTest.cpp
    DisplayEndTest.cpp
    EditorFormTest.cpp
    FirstInstanceTest.cpp
    GhostCompletionTest.cpp
    KestryUrlTest.cpp
    LaunchOptionsTest.cpp
    LocalServerTest.cpp
    NotchControllerTest.cpp
    NotchGeometryTest.cpp
    NotchOrdersTest.cpp
    NotchPreviewTest.cpp
    NotchSurfaceTest.cpp
    PlatformChoiceTest.cpp
    QtSchedulerTest.cpp
    QuitSignalsTest.cpp
    RoutesTest.cpp
    ScreenStrutsTest.cpp
    SessionBridgeTest.cpp
    SessionFactsTest.cpp
    SessionTargetTest.cpp
    SettingsDefaultsTest.cpp
    ShellCommandsTest.cpp
    ShellMenusTest.cpp
    SpokenDurationTest.cpp
    StatusFrameTest.cpp
    StatusItemTest.cpp
    TargetListModelTest.cpp
    TextMorphTest.cpp
    TimeZoneWatchTest.cpp
    UpdateHandlingTest.cpp
    UpdateRequestTest.cpp
    WorkspaceBridgeTest.cpp
)
target_link_libraries(kestry_application_tests
    PRIVATE KestryApplication kestry_test_support kestry_warnings Qt6::Test GTest::gmock
        GTest::gtest)
gtest_discover_tests(kestry_application_tests
    DISCOVERY_MODE PRE_TEST PROPERTIES LABELS application)

# What needs windows, and so another application object.
add_executable(kestry_window_tests
    NotchWindowsTest.cpp
    OrdinaryStageTest.cpp
    WindowTestMain.cpp
)
target_include_directories(kestry_window_tests PRIVATE ../support)
target_link_libraries(kestry_window_tests
    PRIVATE KestryApplication KestryApplicationplugin kestry_warnings GTest::gtest)
gtest_discover_tests(kestry_window_tests
    DISCOVERY_MODE PRE_TEST PROPERTIES LABELS application)

# Each visible component on its own, without a screen.
find_package(Qt6 6.4 REQUIRED COMPONENTS QuickTest)
add_executable(kestry_view_tests views/ViewTestMain.cpp views/ViewWorld.cpp views/ViewWorld.h)
set_target_properties(kestry_view_tests PROPERTIES AUTOMOC ON)
target_include_directories(kestry_view_tests PRIVATE ../support views)
target_compile_definitions(kestry_view_tests
    PRIVATE KESTRY_VIEW_TESTS="${CMAKE_CURRENT_SOURCE_DIR}/views")
target_link_libraries(kestry_view_tests
    PRIVATE KestryApplication KestryApplicationplugin kestry_warnings Qt6::QuickTest)
add_test(NAME views COMMAND kestry_view_tests)
set_tests_properties(views PROPERTIES LABELS application TIMEOUT 120)

# No view takes a name for markup. The lint tries itself, and then looks at the sources.
add_test(NAME plain_text_lint
    COMMAND Python3::Interpreter ${CMAKE_CURRENT_SOURCE_DIR}/plainTextLint.py)
add_test(NAME plain_text_of_views
    COMMAND Python3::Interpreter ${CMAKE_CURRENT_SOURCE_DIR}/plainTextLint.py
        ${PROJECT_SOURCE_DIR}/Kestry)
set_tests_properties(plain_text_lint plain_text_of_views PROPERTIES LABELS application)
