# kestrio_library(COMPONENT OUTPUT_NAME): one of the installed libraries, as the target
# KestrioKit${COMPONENT}, which hosts know as KestrioKit::${COMPONENT}.
include(CheckCXXSourceCompiles)
include(CheckIPOSupported)
include(CheckLinkerFlag)
include(GenerateExportHeader)

check_ipo_supported(RESULT KESTRIO_OPTIMISES_WHOLE OUTPUT ignored LANGUAGES CXX)
if(UNIX AND NOT APPLE)
    set(KESTRIO_ELF ON)
    # An older C library cannot load a library with packed relocations.
    check_cxx_source_compiles("#include <features.h>
        #if !__GLIBC_PREREQ(2, 36)
        #error
        #endif
        int main() {}" KESTRIO_LOADS_PACKED_RELOCATIONS)
    check_linker_flag(CXX LINKER:-z,pack-relative-relocs KESTRIO_PACKS_RELOCATIONS)
endif()

# What makes the library small for its hosts. A host pays for every page it loads, and nothing here
# computes for long: -O3 makes the shared library 1.8 times as large, and nothing measurably faster.
function(kestrio_optimise target)
    target_compile_options(${target} PRIVATE $<$<CONFIG:Release>:-Os>)
    if(NOT BUILD_SHARED_LIBS)
        return()
    endif()
    if(KESTRIO_OPTIMISES_WHOLE)
        set_target_properties(${target} PROPERTIES INTERPROCEDURAL_OPTIMIZATION_RELEASE ON)
        if(CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
            # Code that is the same in several partitions is kept once in a single one.
            target_link_options(${target} PRIVATE $<$<CONFIG:Release>:-flto-partition=one>)
        endif()
    endif()
    if(KESTRIO_LOADS_PACKED_RELOCATIONS AND KESTRIO_PACKS_RELOCATIONS)
        target_link_options(${target} PRIVATE LINKER:-z,pack-relative-relocs)
    endif()
endfunction()

# Exports what the component's exports.map lists and nothing else. A name that another component
# keeps to itself fails the link here rather than the link of a host.
function(kestrio_limit_exports target component)
    set(exports ${PROJECT_SOURCE_DIR}/KestrioKit/${component}/exports.map)
    target_link_options(${target} PRIVATE LINKER:--version-script=${exports})
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${exports})
    if(NOT KESTRIO_SANITIZE)
        target_link_options(${target} PRIVATE LINKER:-z,defs)
    endif()
endfunction()

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
    generate_export_header(${target} BASE_NAME ${base}
        EXPORT_FILE_NAME ${PROJECT_BINARY_DIR}/KestrioKit/${output_name}Export.h)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR} ${PROJECT_BINARY_DIR})
    target_compile_definitions(${target}
        PUBLIC $<$<NOT:$<BOOL:${BUILD_SHARED_LIBS}>>:${base}_STATIC_DEFINE>)
    # The public headers are C++17; the library itself is built as C++20.
    target_compile_features(${target} INTERFACE cxx_std_17)
    # Nothing here throws, and Qt does not promise to survive what is thrown through it.
    target_compile_options(${target} PRIVATE $<$<NOT:$<CXX_COMPILER_ID:MSVC>>:-fno-exceptions>)
    kestrio_optimise(${target})
    if(KESTRIO_ELF AND BUILD_SHARED_LIBS)
        kestrio_limit_exports(${target} ${component})
        # What loads the library at run time must not take it away from under the library's threads,
        # nor a front end from under the core.
        target_link_options(${target} PRIVATE LINKER:-z,nodelete)
    elseif(KESTRIO_ELF)
        # A static library asks the same of what it is linked into.
        target_link_options(${target} INTERFACE LINKER:-z,nodelete)
    endif()
endfunction()

# kestrio_install(COMPONENT [FILE_SET SET...]): installs that library, its public headers and what
# CMake and pkg-config read.
function(kestrio_install component)
    set(export KestrioKit${component}Targets)
    install(TARGETS KestrioKit${component} EXPORT ${export} ${ARGN})
    install(EXPORT ${export} NAMESPACE KestrioKit:: DESTINATION ${KESTRIO_CONFIG_FOLDER})
    # Relative to the file itself, because the installation may be given another prefix, or moved.
    set(folder ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
    file(RELATIVE_PATH prefix ${folder} ${CMAKE_INSTALL_PREFIX})
    string(REGEX REPLACE "/$" "" prefix ${prefix})
    if(component STREQUAL "Core")
        set(template KestrioKitCore.pc.in)
        if(NOT BUILD_SHARED_LIBS)
            set(static_flags " -DKESTRIOKIT_STATIC_DEFINE")
            set(static_libraries " -Wl,-z,nodelete")
        endif()
    else()
        set(template KestrioKitFrontEnd.pc.in)
        set(link "-Wl,--push-state,--no-as-needed,-lKestrioKit${component},--pop-state")
        if(NOT BUILD_SHARED_LIBS)
            set(link "-Wl,-u,kestrioKit${component} -lKestrioKit${component}")
        endif()
    endif()
    configure_file(${PROJECT_SOURCE_DIR}/cmake/${template} KestrioKit${component}.pc @ONLY)
    install(FILES ${CMAKE_CURRENT_BINARY_DIR}/KestrioKit${component}.pc
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
endfunction()
