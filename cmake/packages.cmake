# Packages by CPack, one for each component of what is installed: Debian's, each from one row below, and
# for Windows a ZIP with all of it. script/package makes and tries them.
set(CPACK_PACKAGE_NAME lorimat)
set(CPACK_PACKAGE_VERSION ${PROJECT_VERSION})
set(CPACK_PACKAGE_VENDOR "the liblorimatrt developers")
set(LORIMAT_PACKAGER "liblorimatrt developers <developers@liblorimatrt.invalid>" CACHE STRING
    "Who makes the packages, as Debian writes it")
set(CPACK_PACKAGE_CONTACT ${LORIMAT_PACKAGER})
set(CPACK_RESOURCE_FILE_LICENSE ${PROJECT_SOURCE_DIR}/LICENSE)
set(CPACK_PACKAGE_DIRECTORY ${PROJECT_BINARY_DIR}/packages)
set(CPACK_STRIP_FILES ON)
if(WIN32)
  set(CPACK_GENERATOR ZIP)
  math(EXPR bits "8 * ${CMAKE_SIZEOF_VOID_P}")
  set(CPACK_PACKAGE_FILE_NAME lorimatrt-${PROJECT_VERSION}-win${bits})
  set(CPACK_ARCHIVE_COMPONENT_INSTALL OFF)
  include(CPack)
  return()
endif()

set(CPACK_GENERATOR DEB)
set(CPACK_DEB_COMPONENT_INSTALL ON)
set(CPACK_DEBIAN_FILE_NAME DEB-DEFAULT)
set(CPACK_DEBIAN_PACKAGE_CONTROL_STRICT_PERMISSION ON)
# What CMake does not install: copyright, changelog, pages compressed, overrides of lintian.
set(CPACK_PRE_BUILD_SCRIPTS ${PROJECT_SOURCE_DIR}/cmake/debian/prepare.cmake)
set(CPACK_LORIMAT_SOURCE_DIR ${PROJECT_SOURCE_DIR})
set(CPACK_COMPONENTS_ALL)
set(exactly "(= ${PROJECT_VERSION})")

# lorimat_package(COMPONENT PACKAGE name SECTION section [TARGET target] [DEPENDS text]
#                 [RECOMMENDS text] [ARCHITECTURE all] SUMMARY text TEXT text)
# Without its target, which may be off, there is no package.
macro(lorimat_package component)
  cmake_parse_arguments(arg "" "PACKAGE;SECTION;TARGET;DEPENDS;RECOMMENDS;ARCHITECTURE;SUMMARY;TEXT"
                        "" ${ARGN})
  if(NOT arg_TARGET OR TARGET ${arg_TARGET})
    list(APPEND CPACK_COMPONENTS_ALL ${component})
    string(TOUPPER ${component} key)
    set(CPACK_DEBIAN_${key}_PACKAGE_NAME ${arg_PACKAGE})
    set(CPACK_DEBIAN_${key}_PACKAGE_SECTION ${arg_SECTION})
    set(CPACK_DEBIAN_${key}_PACKAGE_DEPENDS "${arg_DEPENDS}")
    set(CPACK_DEBIAN_${key}_PACKAGE_RECOMMENDS "${arg_RECOMMENDS}")
    set(CPACK_DEBIAN_${key}_DESCRIPTION "${arg_SUMMARY}\n${arg_TEXT}")
    if(arg_ARCHITECTURE)
      set(CPACK_DEBIAN_${key}_PACKAGE_ARCHITECTURE ${arg_ARCHITECTURE})
    else()
      set(CPACK_DEBIAN_${key}_PACKAGE_SHLIBDEPS ON)
    endif()
  endif()
endmacro()

# lorimat_library_packages(NAME TARGET target NUMBER soname-number SUMMARY text TEXT text
#                          [RECOMMENDS text] [HEADERS_DEPEND text]): of a library of cmake/deliveries.cmake.
macro(lorimat_library_packages name)
  cmake_parse_arguments(lib "" "TARGET;NUMBER;SUMMARY;TEXT;RECOMMENDS;HEADERS_DEPEND" "" ${ARGN})
  lorimat_package(${name} PACKAGE lib${name}${lib_NUMBER} SECTION libs TARGET ${lib_TARGET}
                  RECOMMENDS "${lib_RECOMMENDS}" SUMMARY "${lib_SUMMARY}" TEXT "${lib_TEXT}")
  # Whoever links it depends on this package, and the loader is told that it has come or gone.
  set(control ${PROJECT_BINARY_DIR}/debian/${name})
  file(WRITE ${control}/shlibs "lib${name} ${lib_NUMBER} lib${name}${lib_NUMBER} (>= ${PROJECT_VERSION})\n")
  file(WRITE ${control}/triggers "activate-noawait ldconfig\n")
  string(TOUPPER ${name} key)
  set(CPACK_DEBIAN_${key}_PACKAGE_CONTROL_EXTRA ${control}/shlibs ${control}/triggers)
  set(needs "lib${name}${lib_NUMBER} ${exactly}")
  if(lib_HEADERS_DEPEND)
    string(APPEND needs ", ${lib_HEADERS_DEPEND}")
  endif()
  lorimat_package(${name}-dev PACKAGE lib${name}-dev SECTION libdevel TARGET ${lib_TARGET}
                  DEPENDS "${needs}" SUMMARY "${lib_SUMMARY} - development files"
                  TEXT "${lib_TEXT}\n\nThis package has what programs are built with that use it.")
endmacro()

set(what_it_is "liblorimatrt takes a line of text in which applications of a cash desk have
long spoken to their register, calls the interface of a modern fiscal printer,
and answers with a number and a text.")
lorimat_library_packages(lorimatrt TARGET lorimatrt NUMBER ${PROJECT_VERSION_MAJOR}
  RECOMMENDS lorimat-data SUMMARY "lines of a cash-desk language on a fiscal device"
  TEXT "${what_it_is}")
lorimat_library_packages(lorimat-register TARGET lorimat_register_shared NUMBER 1
  HEADERS_DEPEND "liblorimatrt-dev ${exactly}" SUMMARY "virtual fiscal register"
  TEXT "A fiscal register in memory or in a file, with virtual paper, to be given to
liblorimatrt in the place of a device.")
lorimat_library_packages(lorimat-c TARGET lorimat_c NUMBER 1
  HEADERS_DEPEND "liblorimatrt-dev ${exactly}" SUMMARY "fiscal devices in C for liblorimatrt"
  TEXT "Device clients as tables of functions, and explanations of result codes, for
programs that use liblorimatrt and are not written in C++.")
lorimat_library_packages(lorimat-register-c TARGET lorimat_register_c NUMBER 1
  HEADERS_DEPEND "liblorimat-c-dev ${exactly}" SUMMARY "virtual fiscal register in C"
  TEXT "The virtual fiscal register of liblorimatrt for programs that are not written
in C++.")
lorimat_package(lorimat-data PACKAGE lorimat-data SECTION misc ARCHITECTURE all
  SUMMARY "words of a cash-desk language"
  TEXT "The definition file from which liblorimatrt takes the words of its language.")
lorimat_package(lorimat PACKAGE lorimat SECTION utils TARGET lorimat
  DEPENDS "liblorimatrt${PROJECT_VERSION_MAJOR} ${exactly}, lorimat-data ${exactly}"
  RECOMMENDS libcurl4
  SUMMARY "run, check and explain lines of a cash-desk language"
  TEXT "${what_it_is}

This is the program that a person uses: it runs files of lines on a virtual
register, checks them without running them, has a shell, and tells what result
codes mean. With it comes lorimatd, which takes lines and receipts by HTTP.")
# The component with the Python package, where there is one.
if(TARGET lorimat_c AND TARGET lorimat_register_c)
  lorimat_package(python3-lorimat PACKAGE python3-lorimat SECTION python ARCHITECTURE all
    DEPENDS "python3 (>= 3.9), liblorimatrt${PROJECT_VERSION_MAJOR} (>= ${PROJECT_VERSION}), liblorimat-c1 (>= ${PROJECT_VERSION}), liblorimat-register-c1 (>= ${PROJECT_VERSION}), lorimat-data"
    SUMMARY "lines of a cash-desk language on a fiscal device, from Python"
    TEXT "${what_it_is}\n\nThis package has the module for Python 3.")
  # Their names are what dpkg calls them.
  set(control ${PROJECT_BINARY_DIR}/debian/python3-lorimat)
  foreach(program IN ITEMS postinst prerm)
    configure_file(${PROJECT_SOURCE_DIR}/cmake/debian/python3-lorimat.${program}
                   ${control}/${program} COPYONLY FILE_PERMISSIONS OWNER_READ OWNER_WRITE OWNER_EXECUTE
                   GROUP_READ GROUP_EXECUTE WORLD_READ WORLD_EXECUTE)
  endforeach()
  set(CPACK_DEBIAN_PYTHON3-LORIMAT_PACKAGE_CONTROL_EXTRA ${control}/postinst ${control}/prerm)
endif()
include(CPack)
