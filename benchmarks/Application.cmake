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
