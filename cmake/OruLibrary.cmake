# What every shared library of this project shares: its file version, the
# ABI version in its file name, and the list of symbols it exports.
set(ORU_EXPORTS_MAP ${CMAKE_CURRENT_LIST_DIR}/exports.map)

function(oru_library target)
  # A 0.x release may break the ABI with each minor version, so the minor
  # version is part of the file name until 1.0.
  if(PROJECT_VERSION_MAJOR EQUAL 0)
    set(soversion 0.${PROJECT_VERSION_MINOR})
  else()
    set(soversion ${PROJECT_VERSION_MAJOR})
  endif()
  set_target_properties(${target} PROPERTIES VERSION ${PROJECT_VERSION} SOVERSION ${soversion})
  get_target_property(type ${target} TYPE)
  if(type STREQUAL "SHARED_LIBRARY")
    target_link_options(${target} PRIVATE "LINKER:--version-script=${ORU_EXPORTS_MAP}")
    set_property(TARGET ${target} APPEND PROPERTY LINK_DEPENDS ${ORU_EXPORTS_MAP})
  endif()
  if(ORU_INSTALL_RPATH)
    # The libraries lie in one folder: each finds the others beside itself,
    # so a program that links only liboru (--as-needed) still starts.
    set_target_properties(${target} PROPERTIES INSTALL_RPATH "$ORIGIN")
  endif()
  if(ORU_INSTALL)
    install(TARGETS ${target} EXPORT OruTargets
      LIBRARY DESTINATION ${CMAKE_INSTALL_LIBDIR}
      ARCHIVE DESTINATION ${CMAKE_INSTALL_LIBDIR}
      RUNTIME DESTINATION ${CMAKE_INSTALL_BINDIR})
  endif()
endfunction()
