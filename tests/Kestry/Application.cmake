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
    ApplicationTestMain.cpp
    DesktopSettingsTest.cpp
    EditorFormTest.cpp
    LaunchOptionsTest.cpp
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
    SessionTargetTest.cpp
    SettingsDefaultsTest.cpp
    ShellCommandsTest.cpp
    ShellMenusTest.cpp
    SpokenDurationTest.cpp
    StatusFrameTest.cpp
    StatusItemTest.cpp
    TargetListModelTest.cpp
    TextMorphTest.cpp
    WorkspaceBridgeTest.cpp
)
target_include_directories(kestry_application_tests PRIVATE ../support)
target_link_libraries(kestry_application_tests
    PRIVATE KestryApplication kestry_warnings Qt6::Test GTest::gmock GTest::gtest)
gtest_discover_tests(kestry_application_tests
    DISCOVERY_MODE PRE_TEST PROPERTIES LABELS application)

# What needs windows, and so another application object.
add_executable(kestry_window_tests
    NotchWindowsTest.cpp
    WindowTestMain.cpp
)
target_include_directories(kestry_window_tests PRIVATE ../support)
target_link_libraries(kestry_window_tests
    PRIVATE KestryApplication KestryApplicationplugin kestry_warnings GTest::gtest)
gtest_discover_tests(kestry_window_tests
    DISCOVERY_MODE PRE_TEST PROPERTIES LABELS application)
