// Registration of what a plug-in offers. Include it in exactly one source of a plug-in: it plants
// the version text, the signature block and the declarations of the entry functions there. A second
// source that needs the class defines MNoVersionString and MNoPluginEntry before.
#pragma once

#include <maya/MFnBase.h>

MAYA_API_NAMESPACE_OPEN

typedef void* (*MCreatorFunction)();
typedef MSyntax (*MCreateSyntaxFunction)();

class MAYA_API_EXPORT MFnPlugin : public MFnBase {
  public:
    MFnPlugin();
    // `object` is the one that the entry function received. A vendor and version other than
    // "Unknown" are kept as those of the plug-in.
    explicit MFnPlugin(MObject& object, const char* vendor = "Unknown",
                       const char* version = "Unknown", const char* requiredApiVersion = "Any",
                       MStatus* ReturnStatus = nullptr);
    explicit MFnPlugin(const MObject&, const char* = "", const char* = "", const char* = "",
                       MStatus* = nullptr) = delete;
    ~MFnPlugin() override;

    MFn::Type type() const override;

    MString vendor(MStatus* ReturnStatus = nullptr) const;
    MString version(MStatus* ReturnStatus = nullptr) const;
    MString apiVersion(MStatus* ReturnStatus = nullptr) const;
    MString name(MStatus* ReturnStatus = nullptr) const;
    // The folder of the library.
    MString loadPath(MStatus* ReturnStatus = nullptr) const;

    // Makes the command callable from the scripting languages. A name that is taken fails: the
    // first registration stays and nothing is printed.
    MStatus registerCommand(const MString& name, MCreatorFunction creator,
                            MCreateSyntaxFunction syntax = nullptr);
    // An unknown name, or the command of another plug-in, fails.
    MStatus deregisterCommand(const MString& name);
};

MAYA_API_NAMESPACE_CLOSE

#if defined(__GNUC__)
#define MAYA_PLUGIN_KEEP __attribute__((used))
#else
#define MAYA_PLUGIN_KEEP
#endif

#if !defined(MNoVersionString)
extern "C" {
MAYA_PLUGIN_EXPORT extern const char MApiVersion[9];
MAYA_PLUGIN_EXPORT extern const char ADSK_PLUGIN_SIGNATURE[128];
MAYA_PLUGIN_KEEP const char MApiVersion[9] = "20240200";
MAYA_PLUGIN_KEEP const char ADSK_PLUGIN_SIGNATURE[128] = {0};
}
#endif

#if !defined(MNoPluginEntry)
#include <maya/MObject.h>
#include <maya/MStatus.h>
#if defined(__clang__)
#pragma clang diagnostic push
#pragma clang diagnostic ignored "-Wreturn-type-c-linkage"
#endif
extern "C" {
MAYA_PLUGIN_EXPORT MStatus initializePlugin(MObject object);
MAYA_PLUGIN_EXPORT MStatus uninitializePlugin(MObject object);
}
#if defined(__clang__)
#pragma clang diagnostic pop
#endif
#endif
