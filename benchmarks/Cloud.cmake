if(NOT KESTRY_APPLICATION)
    return()
endif()

# `./dev bench cloud` runs kestry_cloud_benchmark, which starts the server of the tests.
find_package(Qt6 6.4 REQUIRED COMPONENTS Core Network)
set(double ${PROJECT_SOURCE_DIR}/tests/KestryCloud)
add_executable(kestry_cloud_server
    ${PROJECT_SOURCE_DIR}/tests/couch/CouchDoubleMain.cpp ${double}/CouchDouble.cpp
    ${double}/CouchDoubleAnswers.cpp ${double}/DoubleDatabase.cpp)
target_include_directories(kestry_cloud_server PRIVATE ${double})
target_link_libraries(kestry_cloud_server PRIVATE kestry_warnings Qt6::Core Qt6::Network)

kestry_benchmark(cloud CloudBenchmark.cpp)
target_sources(kestry_cloud_benchmark PRIVATE
    BareClient.cpp CloudDesk.cpp CloudRoles.cpp LongWire.cpp
    ${PROJECT_SOURCE_DIR}/KestryDesktop/QtScheduler.cpp)
target_include_directories(kestry_cloud_benchmark PRIVATE ${PROJECT_SOURCE_DIR}/KestryDesktop)
target_link_libraries(kestry_cloud_benchmark PRIVATE KestryCloud Qt6::Core Qt6::Network)
add_dependencies(kestry_cloud_benchmark kestry_cloud_server)
