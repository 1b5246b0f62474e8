# kestrio_compile_options(TARGET): the warnings, definitions and sanitizers of every target here.
find_program(KESTRIO_CCACHE ccache)
if(KESTRIO_CCACHE AND NOT CMAKE_CXX_COMPILER_LAUNCHER)
    set(CMAKE_CXX_COMPILER_LAUNCHER ${KESTRIO_CCACHE})
endif()

function(kestrio_compile_options target)
    target_compile_options(${target} PRIVATE -Wall -Wextra -Wpedantic -Wnon-virtual-dtor
        -Woverloaded-virtual -Wimplicit-fallthrough)
    # A name of one file may be shadowed in another one that is compiled together with it.
    if(NOT CMAKE_UNITY_BUILD)
        target_compile_options(${target} PRIVATE -Wshadow)
    endif()
    target_compile_definitions(${target} PRIVATE QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII
        QT_NO_CAST_FROM_BYTEARRAY QT_NO_URL_CAST_FROM_STRING QT_NO_KEYWORDS QT_NO_FOREACH
        QT_DISABLE_DEPRECATED_BEFORE=0x060400)
    if(KESTRIO_DEVELOPMENT)
        target_compile_options(${target} PRIVATE -Werror)
    endif()
    if(KESTRIO_SANITIZE)
        target_compile_options(${target} PRIVATE -fsanitize=${KESTRIO_SANITIZE}
            -fno-omit-frame-pointer -fno-sanitize-recover=all -g1)
        # Qt Qml's headers have fences, which the thread sanitizer does not follow.
        if(KESTRIO_SANITIZE STREQUAL "thread" AND CMAKE_CXX_COMPILER_ID STREQUAL "GNU")
            target_compile_options(${target} PRIVATE -Wno-tsan)
        endif()
        # PUBLIC: whatever links an instrumented library needs the runtime.
        target_link_options(${target} PUBLIC -fsanitize=${KESTRIO_SANITIZE})
    endif()
endfunction()
