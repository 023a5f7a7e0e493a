if(NOT KESTRY_APPLICATION)
    return()
endif()

# `./dev bench app` runs ApplicationBenchmark.py on both programs.
find_package(Qt6 6.4 REQUIRED COMPONENTS Gui Qml Quick)
qt_add_executable(kestry_smallest_window SmallestWindow.cpp)
set_target_properties(kestry_smallest_window PROPERTIES AUTORCC OFF)
qt_add_resources(kestry_smallest_window smallest_window PREFIX / FILES SmallestWindow.qml)
target_link_libraries(kestry_smallest_window PRIVATE Qt6::Gui Qt6::Qml Qt6::Quick kestry_warnings)

add_custom_target(kestry_app_benchmark DEPENDS kestry kestryctl kestry_smallest_window)

# `./dev bench window` runs WindowBenchmark.py on these.
qt_add_executable(kestry_list_window ListWindow.cpp)
set_target_properties(kestry_list_window PROPERTIES AUTORCC OFF)
qt_add_resources(kestry_list_window list_window PREFIX / FILES ListStrip.qml ListWindow.qml)
target_link_libraries(kestry_list_window PRIVATE Qt6::Gui Qt6::Qml Qt6::Quick kestry_warnings)

kestry_benchmark(list ListBenchmark.cpp)
target_link_libraries(kestry_list_benchmark PRIVATE KestryApplication ICU::uc ICU::i18n)

add_executable(kestry_session_pass SessionPass.cpp)
target_link_libraries(kestry_session_pass PRIVATE KestryMeasurement kestry_warnings)

add_custom_target(kestry_window_benchmark
    DEPENDS kestry kestryctl kestry_list_benchmark kestry_list_window kestry_session_pass)
