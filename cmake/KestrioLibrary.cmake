# kestrio_library(COMPONENT OUTPUT_NAME): one of the installed libraries, as the target
# KestrioKit${COMPONENT}, which hosts know as KestrioKit::${COMPONENT}.
include(GenerateExportHeader)
include(CheckIPOSupported)

check_ipo_supported(RESULT KESTRIO_OPTIMISES_WHOLE OUTPUT ignored LANGUAGES CXX)

function(kestrio_library component output_name)
    set(target KestrioKit${component})
    add_library(${target})
    add_library(KestrioKit::${component} ALIAS ${target})
    kestrio_compile_options(${target})
    set_target_properties(${target} PROPERTIES
        EXPORT_NAME ${component}
        OUTPUT_NAME ${output_name}
        VERSION ${PROJECT_VERSION}
        SOVERSION ${PROJECT_VERSION_MAJOR}.${PROJECT_VERSION_MINOR}
        POSITION_INDEPENDENT_CODE ON)
    string(TOUPPER ${output_name} base)
    generate_export_header(${target} BASE_NAME ${base} EXPORT_FILE_NAME ${output_name}Export.h)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR})
    target_compile_definitions(${target}
        PUBLIC $<$<NOT:$<BOOL:${BUILD_SHARED_LIBS}>>:${base}_STATIC_DEFINE>)
    # The public headers are C++17; the library itself is built as C++20.
    target_compile_features(${target} INTERFACE cxx_std_17)
    # A host pays for every page it loads, and nothing here computes for long: -O3 makes the shared
    # library 1.8 times as large, and nothing measurably faster.
    target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-Os>)
    if(BUILD_SHARED_LIBS AND KESTRIO_OPTIMISES_WHOLE)
        set_target_properties(${target} PROPERTIES INTERPROCEDURAL_OPTIMIZATION_RELEASE ON)
    endif()
    if(BUILD_SHARED_LIBS AND UNIX AND NOT APPLE)
        set(exports ${CMAKE_CURRENT_SOURCE_DIR}/${component}/exports.map)
        target_link_options(${target} PRIVATE LINKER:--version-script=${exports})
        set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${exports})
    endif()
endfunction()

# kestrio_install(COMPONENT [FILE_SET SET...]): installs that library, its public headers and what
# pkg-config reads.
function(kestrio_install component)
    install(TARGETS KestrioKit${component} EXPORT KestrioKitTargets ${ARGN})
    if(NOT BUILD_SHARED_LIBS)
        set(static_flags " -DKESTRIOKIT_STATIC_DEFINE")
        set(static_libraries " -Wl,-z,nodelete")
    endif()
    configure_file(${PROJECT_SOURCE_DIR}/cmake/KestrioKit${component}.pc.in KestrioKit${component}.pc
        @ONLY)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/KestrioKit${component}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()
