if(NOT KESTRY_APPLICATION)
    return()
endif()

find_package(Qt6 6.4 REQUIRED COMPONENTS Core DBus Gui Qml Quick Svg Widgets)
find_package(PkgConfig REQUIRED)
pkg_check_modules(WAYLAND REQUIRED IMPORTED_TARGET wayland-client)
pkg_check_modules(XCB REQUIRED IMPORTED_TARGET xcb xcb-randr xcb-shape xcb-xinput)

set(applicationSources
    ActivityAngle.cpp
    AppDelegate.cpp
    AppState.cpp
    AppearanceBridge.cpp
    AppearanceBridge.h
    AppearanceSettings.cpp
    ApplicationInfo.cpp
    ApplicationServer.cpp
    ClockJumpText.cpp
    DesktopService.cpp
    DesktopService.h
    DesktopSettings.cpp
    DesktopSettings.h
    DisplayEnd.cpp
    EditorForm.cpp
    EditorForm.h
    FirstInstance.cpp
    GhostCompletion.cpp
    GhostCompletion.h
    KestryMark.cpp
    KestryMark.h
    KestryUrl.cpp
    LaunchOptions.cpp
    LayerPopups.cpp
    LayerPopups.h
    LayerShellProtocol.cpp
    LayerStage.cpp
    LocalServer.cpp
    LocalServer.h
    LoginManager.cpp
    LoginManager.h
    MarkPainting.cpp
    MenuPalette.cpp
    MenuStyle.cpp
    MenuStyle.h
    MorphingText.cpp
    MorphingText.h
    NativeMenu.cpp
    NotchController.cpp
    NotchControllerPreview.cpp
    NotchGeometry.cpp
    NotchSurface.cpp
    NotchSurface.h
    NotchWindows.cpp
    NotchWindows.h
    OrdinaryStage.cpp
    OrdinaryStage.h
    PanelWindow.cpp
    PanelWindow.h
    PlatformChoice.cpp
    QtScheduler.cpp
    QuitSignals.cpp
    RoundedShape.cpp
    RoundedShape.h
    Routes.cpp
    ScreenStruts.cpp
    SessionBridge.cpp
    SessionBridge.h
    SessionFacts.cpp
    SessionMenus.cpp
    SessionMenus.h
    SessionTarget.cpp
    SettingsDefaults.cpp
    ShapedRuns.cpp
    ShellCommands.cpp
    ShellMenus.cpp
    SpokenDuration.cpp
    StageChoice.cpp
    StatusFrame.cpp
    StatusItem.cpp
    Surfaces.cpp
    Symbol.cpp
    Symbol.h
    SymbolPainting.cpp
    TargetListModel.cpp
    TargetListModel.h
    TextMorph.cpp
    TimeZoneWatch.cpp
    ToolTips.cpp
    ToolTips.h
    TrayIcon.cpp
    TrayIcon.h
    UpdateRequest.cpp
    WaylandKeyboard.cpp
    WaylandLayerShell.cpp
    WorkspaceBridge.cpp
    WorkspaceBridge.h
    WorkspaceWindow.cpp
    WorkspaceWindow.h
    X11RootMonitor.cpp
    X11Stage.cpp
)
qt_add_library(KestryApplication STATIC ${applicationSources})
# Our warnings are for our own sources: what the QML compiler writes into this library has its own
# ways.
get_target_property(warnings kestry_warnings INTERFACE_COMPILE_OPTIONS)
set_source_files_properties(${applicationSources} PROPERTIES COMPILE_OPTIONS "${warnings}")
set_target_properties(KestryApplication PROPERTIES AUTOMOC ON)
target_include_directories(KestryApplication PUBLIC ${CMAKE_CURRENT_SOURCE_DIR})
target_link_libraries(KestryApplication
    PUBLIC KestryCommandLine KestryCore Qt6::Core Qt6::DBus Qt6::Gui Qt6::Qml Qt6::Quick
        Qt6::Widgets
    PRIVATE Qt6::GuiPrivate Qt6::Svg PkgConfig::WAYLAND PkgConfig::XCB
)

set_source_files_properties(Theme.qml PROPERTIES QT_QML_SINGLETON_TYPE TRUE)
qt_add_qml_module(KestryApplication
    URI Kestry
    VERSION 1.0
    RESOURCE_PREFIX /
    DEPENDENCIES QtQuick
    QML_FILES
        ActionButton.qml
        AlertSheet.qml
        Banner.qml
        BridgeView.qml
        EditorSheet.qml
        FactLabel.qml
        FadingItem.qml
        FormFields.qml
        FormTextField.qml
        FormToggle.qml
        GlyphLayer.qml
        HoverTip.qml
        IconButton.qml
        IconCell.qml
        IdleRow.qml
        InlineSessionTitleField.qml
        KestryActivityMark.qml
        KestryGlass.qml
        MessageRow.qml
        NotchActionGlyph.qml
        NotchRevealView.qml
        NotchSessionView.qml
        PanelRows.qml
        PlaceholderBars.qml
        Pressable.qml
        PrimaryButtonStyle.qml
        QuietButtonStyle.qml
        SessionControls.qml
        SessionRows.qml
        SessionTitle.qml
        SessionTitleLabel.qml
        SheetFrame.qml
        SheetHeading.qml
        SheetShade.qml
        Sidebar.qml
        SidebarRow.qml
        TableEntrance.qml
        TargetButton.qml
        TextButton.qml
        Theme.qml
        ThemeColors.qml
        TitlePreview.qml
        TwoTexts.qml
        WorkspaceAlerts.qml
        WorkspaceBanners.qml
        WorkspacePage.qml
        WorkspaceShortcuts.qml
        WorkspaceView.qml
)

# The symbols stand outside the module's folder; inside the program they are found by name.
file(GLOB symbols CONFIGURE_DEPENDS ${PROJECT_SOURCE_DIR}/resources/symbols/*.svg)
qt_add_resources(KestryApplication symbols
    PREFIX /symbols BASE ${PROJECT_SOURCE_DIR}/resources/symbols FILES ${symbols})

qt_add_executable(kestry main.cpp)
target_link_libraries(kestry PRIVATE KestryApplication KestryApplicationplugin kestry_warnings)
install(TARGETS kestry)

# What the build decides, beside the program. JSON knows booleans, which CMake writes in many ways.
option(KESTRY_DEMO_MODE "Start every run as a demo" OFF)
set(KESTRY_DEMO_MODE_JSON $<IF:$<BOOL:${KESTRY_DEMO_MODE}>,true,false>)
file(GENERATE OUTPUT ${PROJECT_BINARY_DIR}/share/kestry/Info.json
    CONTENT "{\n  \"KestryDemoMode\": ${KESTRY_DEMO_MODE_JSON}\n}\n")
install(FILES ${PROJECT_BINARY_DIR}/share/kestry/Info.json DESTINATION share/kestry)
