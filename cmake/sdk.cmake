# The targets Maya::Foundation, Maya::OpenMaya, Maya::OpenMayaAnim and Maya::OpenMayaUI, and
# torvel_maya_plugin(<target>), which dresses a module as a plug-in.
#
# TORVEL_SDK=host   the four targets stand for mayahost; only host/include is visible through them.
# TORVEL_SDK=maya   a genuine installation: MAYA_LOCATION (cache variable, then environment) and,
#                   where headers are not part of the installation, DEVKIT_LOCATION.

set(_maya_libraries Foundation OpenMaya OpenMayaAnim OpenMayaUI)

if(TORVEL_SDK STREQUAL "host")
  foreach(name IN LISTS _maya_libraries)
    add_library(maya_${name} INTERFACE)
    target_link_libraries(maya_${name} INTERFACE mayahost)
    add_library(Maya::${name} ALIAS maya_${name})
  endforeach()
elseif(TORVEL_SDK STREQUAL "maya")
  find_package(MayaSDK REQUIRED)
else()
  message(FATAL_ERROR "TORVEL_SDK is '${TORVEL_SDK}'; it must be 'host' or 'maya'")
endif()

# The definitions that plug-in sources are compiled with, on each platform.
function(torvel_maya_definitions target)
  target_compile_definitions(${target} PRIVATE REQUIRE_IOSTREAM _BOOL)
  if(WIN32)
    target_compile_definitions(${target} PRIVATE NT_PLUGIN _MBCS _AFXDLL)
  elseif(APPLE)
    target_compile_definitions(${target} PRIVATE MAC_PLUGIN OSMac_ OSMac_MachO)
  else()
    target_compile_definitions(${target} PRIVATE LINUX LINUX_64)
  endif()
  set_target_properties(${target} PROPERTIES CXX_VISIBILITY_PRESET hidden
                                             VISIBILITY_INLINES_HIDDEN ON)
endfunction()

# Name, suffix and exports of a plug-in module.
function(torvel_maya_plugin target)
  torvel_maya_definitions(${target})
  set_target_properties(${target} PROPERTIES PREFIX "")
  if(WIN32)
    set_target_properties(${target} PROPERTIES SUFFIX ".mll")
    target_link_options(${target} PRIVATE /EXPORT:initializePlugin /EXPORT:uninitializePlugin)
  elseif(APPLE)
    set_target_properties(${target} PROPERTIES SUFFIX ".bundle")
  else()
    # Instances of standard templates keep default visibility: the list of exports hides them too.
    set(exports "${PROJECT_SOURCE_DIR}/cmake/plugin_exports.map")
    set_target_properties(${target} PROPERTIES SUFFIX ".so" LINK_DEPENDS "${exports}")
    target_link_options(${target} PRIVATE "LINKER:--version-script=${exports}")
    # An address-checked module finds the checker's functions in the program that opens it.
    if(NOT TORVEL_SANITIZE)
      target_link_options(${target} PRIVATE "LINKER:-z,defs")
    endif()
  endif()
endfunction()
