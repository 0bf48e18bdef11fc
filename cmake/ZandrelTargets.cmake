# The three ways in which this project makes a target, so that each CMakeLists.txt only lists files
# and what it links.

# zandrel_library(<name> [QT] SOURCES <files> [LINKS <targets>] [PRIVATE_LINKS <targets>])
# A layer: static library zandrel_<name> with the alias Zandrel::<name>. QT turns on moc, uic and rcc
# and the warnings that Qt's headers can bear. LINKS are the layers that its headers may include.
function(zandrel_library name)
    cmake_parse_arguments(arg "QT" "" "SOURCES;LINKS;PRIVATE_LINKS" ${ARGN})
    set(target zandrel_${name})
    add_library(${target} STATIC ${arg_SOURCES})
    add_library(Zandrel::${name} ALIAS ${target})
    set_target_properties(${target} PROPERTIES
        EXPORT_NAME ${name} POSITION_INDEPENDENT_CODE ON)
    target_include_directories(${target} PUBLIC
        $<BUILD_INTERFACE:${PROJECT_SOURCE_DIR}> $<INSTALL_INTERFACE:include/zandrel>)
    target_compile_features(${target} PUBLIC cxx_std_20)
    target_link_libraries(${target} PUBLIC ${arg_LINKS} PRIVATE ${arg_PRIVATE_LINKS})
    zandrel_compile_as(${target} "${arg_QT}")
    set_property(GLOBAL APPEND PROPERTY ZANDREL_LIBRARIES ${target})
endfunction()

# zandrel_executable(<target> [QT] SOURCES <files> [LINKS <targets>])
function(zandrel_executable target)
    cmake_parse_arguments(arg "QT" "" "SOURCES;LINKS" ${ARGN})
    add_executable(${target} ${arg_SOURCES})
    set_target_properties(${target} PROPERTIES POSITION_INDEPENDENT_CODE ON)
    target_include_directories(${target} PRIVATE ${PROJECT_SOURCE_DIR})
    target_link_libraries(${target} PRIVATE ${arg_LINKS})
    zandrel_compile_as(${target} "${arg_QT}")
endfunction()

# zandrel_test(<name> FOLDER <layer> [QT] SOURCES <files> [LINKS <targets>] [LABEL <label>])
# Without QT: a GoogleTest binary whose tests CTest knows one by one; they bear one label, LABEL or the
# layer. With QT: a QtTest binary that runs on the offscreen platform as one CTest test with the labels
# of the layer and "gui".
function(zandrel_test name)
    cmake_parse_arguments(arg "QT" "FOLDER;LABEL" "SOURCES;LINKS" ${ARGN})
    if(arg_QT)
        zandrel_executable(${name} QT SOURCES ${arg_SOURCES} LINKS Qt6::Test ${arg_LINKS})
        set_target_properties(${name} PROPERTIES ZANDREL_IS_TEST ON)
        add_test(NAME ${arg_FOLDER}.${name} COMMAND ${name})
        set_tests_properties(${arg_FOLDER}.${name} PROPERTIES
            LABELS "${arg_FOLDER};gui"
            ENVIRONMENT "QT_QPA_PLATFORM=offscreen;QT_LOGGING_RULES=qt.qpa.*=false"
            TIMEOUT 600)
    else()
        zandrel_executable(${name} SOURCES ${arg_SOURCES} LINKS GTest::gmock_main ${arg_LINKS})
        set_target_properties(${name} PROPERTIES ZANDREL_IS_TEST ON)
        if(NOT arg_LABEL)
            set(arg_LABEL ${arg_FOLDER})
        endif()
        gtest_discover_tests(${name} TEST_PREFIX "${arg_FOLDER}." DISCOVERY_TIMEOUT 120
            PROPERTIES LABELS "${arg_LABEL}" TIMEOUT 600)
    endif()
endfunction()

function(zandrel_compile_as target qt)
    if(qt)
        set_target_properties(${target} PROPERTIES AUTOMOC ON AUTOUIC ON AUTORCC ON)
        target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:zandrel_options>)
        target_compile_definitions(${target} PRIVATE
            QT_NO_CAST_FROM_ASCII QT_NO_CAST_TO_ASCII QT_NO_FOREACH QT_NO_KEYWORDS
            QT_DISABLE_DEPRECATED_BEFORE=0x060400)
    else()
        target_link_libraries(${target} PRIVATE $<BUILD_INTERFACE:zandrel_strict>)
    endif()
endfunction()
