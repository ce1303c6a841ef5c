# What is installed, and how a host finds it: one call of lorimat_deliver for each library that hosts
# use. A library is installed in two components, NAME (what programs need that run) and NAME-dev (what
# they are built with), and is
#
#   lorimatrt::ALIAS              by find_package(lorimatrt), and inside of a project that brings this one
#                                 by add_subdirectory
#   pkg-config --libs NAME        the same for other builds
#
# A library whose target is not built is left out, from all of it.

# lorimat_deliver(TARGET NAME name ALIAS alias DESCRIPTION text HEADERS file... [LINK_AT_RUN_TIME])
#   HEADERS           below include/lorimatrt, or below src: each keeps its path in the folder of headers
#   LINK_AT_RUN_TIME  the plain name goes with the programs: hosts load it by that name
function(lorimat_deliver target)
  cmake_parse_arguments(PARSE_ARGV 1 arg "LINK_AT_RUN_TIME" "NAME;ALIAS;DESCRIPTION" "HEADERS")
  if(NOT TARGET ${target})
    return()
  endif()
  # What it includes belongs to this tree; installed, its headers lie in one folder.
  get_target_property(folders ${target} INTERFACE_INCLUDE_DIRECTORIES)
  list(TRANSFORM folders REPLACE "^(/.*)$" "$<BUILD_INTERFACE:\\1>")
  set_target_properties(${target} PROPERTIES EXPORT_NAME ${arg_ALIAS}
                        INTERFACE_INCLUDE_DIRECTORIES "${folders}")
  add_library(lorimatrt::${arg_ALIAS} ALIAS ${target})
  if(NOT LORIMAT_INSTALL)
    return()
  endif()

  set(link_component ${arg_NAME}-dev)
  if(arg_LINK_AT_RUN_TIME)
    set(link_component ${arg_NAME})
  endif()
  install(TARGETS ${target} EXPORT lorimatrt-${arg_ALIAS}
          RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR} COMPONENT ${arg_NAME}
          LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${arg_NAME}
                  NAMELINK_COMPONENT ${link_component}
          ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR} COMPONENT ${arg_NAME}-dev
          INCLUDES DESTINATION ${CMAKE_INSTALL_INCLUDEDIR})
  install(EXPORT lorimatrt-${arg_ALIAS} NAMESPACE lorimatrt:: FILE lorimatrt-${arg_ALIAS}.cmake
          DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/lorimatrt/targets COMPONENT ${arg_NAME}-dev)
  foreach(header IN LISTS arg_HEADERS)
    cmake_path(GET header PARENT_PATH folder)
    set(from ${PROJECT_SOURCE_DIR}/include/lorimatrt)
    if(NOT EXISTS ${from}/${header})
      set(from ${PROJECT_SOURCE_DIR}/src)
    endif()
    install(FILES ${from}/${header} DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}/lorimatrt/${folder}
            COMPONENT ${arg_NAME}-dev)
  endforeach()

  # Found from the place of the description itself, so that an installed tree can be moved.
  set(PC_NAME ${arg_NAME})
  set(PC_DESCRIPTION ${arg_DESCRIPTION})
  get_target_property(output ${target} OUTPUT_NAME)
  if(NOT output)
    set(output ${target})
  endif()
  set(PC_LIBRARY ${output})
  set(place ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig)
  file(RELATIVE_PATH PC_PREFIX ${place} ${CMAKE_INSTALL_PREFIX})
  file(RELATIVE_PATH PC_INCLUDEDIR ${place} ${CMAKE_INSTALL_FULL_INCLUDEDIR})
  file(RELATIVE_PATH PC_LIBDIR ${place} ${CMAKE_INSTALL_FULL_LIBDIR})
  file(RELATIVE_PATH PC_DATADIR ${place} ${CMAKE_INSTALL_FULL_DATADIR})
  foreach(path IN ITEMS PC_PREFIX PC_INCLUDEDIR PC_LIBDIR PC_DATADIR)
    string(REGEX REPLACE "/$" "" ${path} "${${path}}")
  endforeach()
  configure_file(${PROJECT_SOURCE_DIR}/cmake/library.pc.in
                 ${PROJECT_BINARY_DIR}/pkgconfig/${arg_NAME}.pc @ONLY)
  install(FILES ${PROJECT_BINARY_DIR}/pkgconfig/${arg_NAME}.pc
          DESTINATION ${CMAKE_INSTALL_LIBDIR}/pkgconfig COMPONENT ${arg_NAME}-dev)
endfunction()

lorimat_deliver(lorimatrt NAME lorimatrt ALIAS lorimatrt LINK_AT_RUN_TIME
  DESCRIPTION "Runs lines of an old cash-desk language on a fiscal device"
  HEADERS lorimatrt.h client.h
          rpccommon/client/rtfclientinterface.h rpccommon/client/rtfclientbase.h
          rpccommon/client/rtfclientoperation.h rpccommon/client/rtfclientoperations.inc
          rpccommon/services/rtfconst.h rpccommon/services/rtffptrconst.h
          managermachine/managerdownloadtablerowtype.h managermachine/managerparams.h
          managermachine/pflitemtype.h pal/peripherals/keyboard/functioncode.h
          pal/protocols/lorimat/prot_def.h)
lorimat_deliver(lorimat_register_shared NAME lorimat-register ALIAS register
  DESCRIPTION "A virtual fiscal register, to be used in the place of a device"
  HEADERS register.h)
lorimat_deliver(lorimat_c NAME lorimat-c ALIAS c
  DESCRIPTION "Device clients in C, and explanations of result codes"
  HEADERS lorimat.h lorimat_device.h lorimat_constants.h device.h)
lorimat_deliver(lorimat_register_c NAME lorimat-register-c ALIAS register-c
  DESCRIPTION "A virtual fiscal register in C"
  HEADERS lorimat_register.h)

if(NOT LORIMAT_INSTALL)
  return()
endif()
include(CMakePackageConfigHelpers)
# The words of the language, which programs need that run lines.
install(FILES ${PROJECT_SOURCE_DIR}/language/merkelin.ini
        DESTINATION ${CMAKE_INSTALL_DATADIR}/lorimat COMPONENT lorimat-data)
install(FILES ${PROJECT_SOURCE_DIR}/LICENSE
        DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT lorimatrt)
install(FILES ${PROJECT_SOURCE_DIR}/README.md ${PROJECT_SOURCE_DIR}/CHANGELOG.md
        DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT lorimatrt-dev)
install(DIRECTORY ${PROJECT_SOURCE_DIR}/docs
        DESTINATION ${CMAKE_INSTALL_DOCDIR} COMPONENT lorimatrt-dev
        FILES_MATCHING PATTERN "*.md" PATTERN "*.png" PATTERN "*.svg" PATTERN man EXCLUDE)
configure_package_config_file(${PROJECT_SOURCE_DIR}/cmake/lorimatrt-config.cmake.in
  ${PROJECT_BINARY_DIR}/lorimatrt-config.cmake
  INSTALL_DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/lorimatrt
  PATH_VARS CMAKE_INSTALL_DATADIR)
write_basic_package_version_file(${PROJECT_BINARY_DIR}/lorimatrt-config-version.cmake
                                 COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/lorimatrt-config.cmake
              ${PROJECT_BINARY_DIR}/lorimatrt-config-version.cmake
        DESTINATION ${CMAKE_INSTALL_LIBDIR}/cmake/lorimatrt COMPONENT lorimatrt-dev)
