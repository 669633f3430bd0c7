# Install rules: the shared library with its public headers, the shipped
# catalogue, a CMake package (find_package(Quantor CONFIG) gives the target
# Quantor::quantor) and a quantor.pc for pkg-config, and the quantor command
# with its manual page and bash completion. The internal static library and
# the object library stay in the build tree.
include(CMakePackageConfigHelpers)

set(QUANTOR_CMAKE_DIR ${CMAKE_INSTALL_LIBDIR}/cmake/Quantor)

install(TARGETS quantor EXPORT QuantorTargets
  LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
  ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
  RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
install(DIRECTORY ${PROJECT_SOURCE_DIR}/include/quantor
  DESTINATION ${CMAKE_INSTALL_INCLUDEDIR}
  FILES_MATCHING PATTERN "*.h")
# The library finds this folder relative to its own location, so the layout
# must match QUANTOR_INSTALLED_DATA_RELPATH in src/CMakeLists.txt.
install(DIRECTORY ${PROJECT_SOURCE_DIR}/data/unitsandcurrencies/
  DESTINATION ${CMAKE_INSTALL_DATADIR}/quantor/unitsandcurrencies)

# The command itself is installed by tools/CMakeLists.txt; here its manual
# page and its bash completion.
install(FILES ${PROJECT_SOURCE_DIR}/docs/quantor.1 DESTINATION ${CMAKE_INSTALL_MANDIR}/man1)
install(FILES ${PROJECT_SOURCE_DIR}/tools/quantor.bash-completion
  DESTINATION ${CMAKE_INSTALL_DATADIR}/bash-completion/completions RENAME quantor)

install(EXPORT QuantorTargets NAMESPACE Quantor:: DESTINATION ${QUANTOR_CMAKE_DIR})
configure_package_config_file(${CMAKE_CURRENT_LIST_DIR}/QuantorConfig.cmake.in
  ${PROJECT_BINARY_DIR}/QuantorConfig.cmake
  INSTALL_DESTINATION ${QUANTOR_CMAKE_DIR})
write_basic_package_version_file(${PROJECT_BINARY_DIR}/QuantorConfigVersion.cmake
  COMPATIBILITY SameMajorVersion)
install(FILES ${PROJECT_BINARY_DIR}/QuantorConfig.cmake ${PROJECT_BINARY_DIR}/QuantorConfigVersion.cmake
  DESTINATION ${QUANTOR_CMAKE_DIR})

# quantor.pc finds the prefix from its own location (${pcfiledir}), so the
# installed tree may be moved or installed elsewhere with --prefix.
set(QUANTOR_PC_DIR ${CMAKE_INSTALL_LIBDIR}/pkgconfig)
file(RELATIVE_PATH QUANTOR_PC_PREFIX_FROM_PCDIR ${CMAKE_INSTALL_FULL_LIBDIR}/pkgconfig ${CMAKE_INSTALL_PREFIX})
string(REGEX REPLACE "/$" "" QUANTOR_PC_PREFIX_FROM_PCDIR "${QUANTOR_PC_PREFIX_FROM_PCDIR}")
function(quantor_pc_path out dir)
  if(IS_ABSOLUTE "${dir}")
    set(${out} "${dir}" PARENT_SCOPE)
  else()
    set(${out} "\${prefix}/${dir}" PARENT_SCOPE)
  endif()
endfunction()
quantor_pc_path(QUANTOR_PC_LIBDIR "${CMAKE_INSTALL_LIBDIR}")
quantor_pc_path(QUANTOR_PC_INCLUDEDIR "${CMAKE_INSTALL_INCLUDEDIR}")
configure_file(${CMAKE_CURRENT_LIST_DIR}/quantor.pc.in ${PROJECT_BINARY_DIR}/quantor.pc @ONLY)
install(FILES ${PROJECT_BINARY_DIR}/quantor.pc DESTINATION ${QUANTOR_PC_DIR})
