// A queue of changes to connections. Nothing happens before doIt.
#pragma once

#include <maya/MObject.h>
#include <maya/MStatus.h>

MAYA_API_NAMESPACE_OPEN

class MAYA_API_EXPORT MDGModifier {
  public:
    MDGModifier();
    virtual ~MDGModifier();
    MDGModifier(const MDGModifier&) = delete;
    MDGModifier& operator=(const MDGModifier&) = delete;

    // Refused, and not queued: a null plug, a source that cannot be read, a destination that cannot
    // be written, types that do not fit.
    MStatus connect(const MPlug& source, const MPlug& destination);
    MStatus connect(const MObject& sourceNode, const MObject& sourceAttribute,
                    const MObject& destinationNode, const MObject& destinationAttribute);
    // Refused for a null plug; that the two are connected is asked when the change is made.
    MStatus disconnect(const MPlug& source, const MPlug& destination);
    MStatus disconnect(const MObject& sourceNode, const MObject& sourceAttribute,
                       const MObject& destinationNode, const MObject& destinationAttribute);
    MStatus renameNode(const MObject& node, const MString& newName);
    MStatus deleteNode(const MObject& node);

    // Makes what was queued since the last call, in the order of the calls. All of it is tried; the
    // first failure is returned.
    MStatus doIt();
    // Undoes the connections made and broken by the last doIt. Anything else is refused.
    MStatus undoIt();

  protected:
    friend struct MApiBridge;
    struct Data;
    Data* fData;
};

MAYA_API_NAMESPACE_CLOSE
