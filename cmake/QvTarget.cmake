# Settings that every target of ours shares: warnings, sanitizers, strict Qt.
add_library(qv_options INTERFACE)
target_compile_options(qv_options INTERFACE
    -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Wnon-virtual-dtor
    $<$<BOOL:${QV_WARNINGS_AS_ERRORS}>:-Werror>
    $<$<BOOL:${QV_SANITIZE}>:-fsanitize=address,undefined;-fno-sanitize-recover=undefined;-fno-omit-frame-pointer>)
target_link_options(qv_options INTERFACE
    $<$<BOOL:${QV_SANITIZE}>:-fsanitize=address,undefined>)
target_compile_definitions(qv_options INTERFACE
    QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS
    QT_DISABLE_DEPRECATED_BEFORE=0x060400)
target_include_directories(qv_options INTERFACE ${PROJECT_SOURCE_DIR}/src)

get_target_property(missing_features Qt6::Gui QT_DISABLED_PUBLIC_FEATURES)
if("accessibility" IN_LIST missing_features)
    target_compile_options(qv_options INTERFACE
        -include ${PROJECT_SOURCE_DIR}/src/platform/windows/WithoutAccessibility.h)
endif()

# qv_library(NAME SOURCES file... LINKS target...)
# One folder of src/ (or its core or its ui half). LINKS is the proof of the layers: it names
# the lower folders that this one uses, which bring those below them; nothing else links.
function(qv_library name)
    cmake_parse_arguments(arg "" "" "SOURCES;LINKS" ${ARGN})
    add_library(${name} STATIC ${arg_SOURCES})
    target_link_libraries(${name} PUBLIC ${arg_LINKS} PRIVATE qv_options)
    set_target_properties(${name} PROPERTIES AUTOMOC ON AUTOUIC ON AUTORCC ON)
endfunction()

# qv_program(NAME [WINDOWED] [TITLE text] SOURCES file... LINKS target...)
# TITLE is for the authors' programs: what Windows calls it. WINDOWED ones open no console there.
function(qv_program name)
    cmake_parse_arguments(arg "WINDOWED" "TITLE" "SOURCES;LINKS" ${ARGN})
    add_executable(${name} ${arg_SOURCES})
    target_link_libraries(${name} PRIVATE ${arg_LINKS} qv_options)
    if(WIN32)
        set_target_properties(${name} PROPERTIES WIN32_EXECUTABLE "${arg_WINDOWED}")
        target_link_options(${name} PRIVATE -Wl,--tsaware) # no Windows folder of its own there
        qv_windows_resources(${name} "${arg_TITLE}")
    endif()
    set_target_properties(${name} PROPERTIES AUTOMOC ON AUTOUIC ON AUTORCC ON
        RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/bin)
endfunction()

# qv_test(NAME LINKS target...): tests/NAME.cpp as one Qt Test program under CTest.
function(qv_test name)
    cmake_parse_arguments(arg "" "" "LINKS" ${ARGN})
    qv_program(${name} SOURCES ${name}.cpp LINKS ${arg_LINKS} Qt6::Test)
    set_target_properties(${name} PROPERTIES RUNTIME_OUTPUT_DIRECTORY ${CMAKE_BINARY_DIR}/tests)
    add_test(NAME ${name} COMMAND ${name})
    set_tests_properties(${name} PROPERTIES TIMEOUT 120)
endfunction()

# qv_imported(TARGET HEADER LIBRARY)
# A library of the system as a target, found by a header and its name.
function(qv_imported target header library)
    find_path(${library}_INCLUDE_DIR ${header} REQUIRED)
    find_library(${library}_LIBRARY ${library} REQUIRED)
    add_library(${target} UNKNOWN IMPORTED GLOBAL)
    set_target_properties(${target} PROPERTIES IMPORTED_LOCATION ${${library}_LIBRARY}
        INTERFACE_INCLUDE_DIRECTORIES ${${library}_INCLUDE_DIR})
endfunction()

# What Windows wants to know of a program: icon, version, and that it knows about long paths, UTF-8
# and screens of different density.
function(qv_windows_resources name title)
    set(arg_TITLE ${title})
    set(packaging ${PROJECT_SOURCE_DIR}/packaging/windows)
    set(icon_file ${CMAKE_BINARY_DIR}/quovane.ico)
    if(NOT EXISTS ${icon_file})
        qv_icon_file(${PROJECT_SOURCE_DIR}/src/resources/icons/app.svg ${icon_file})
    endif()
    configure_file(${packaging}/program.rc.in ${CMAKE_CURRENT_BINARY_DIR}/${name}.rc @ONLY)
    target_sources(${name} PRIVATE ${CMAKE_CURRENT_BINARY_DIR}/${name}.rc)
endfunction()
