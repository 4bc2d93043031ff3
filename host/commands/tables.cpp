#include "commands/tables.h"

#include "script/session.h"

// The families of commands: each stands in a file of its own, which holds their rows.
#define TORVEL_COMMAND_FAMILIES(family)                                               \
    family(attributeCommands)         /* getAttr setAttr */                           \
        family(attributeEditCommands) /* addAttr deleteAttr */                        \
        family(attributeInfoCommands) /* attributeQuery listAttr */                   \
        family(connectionCommands)    /* connectAttr disconnectAttr ... */            \
        family(createCommands)        /* createNode group */                          \
        family(deleteCommands)        /* delete */                                    \
        family(duplicateCommands)     /* duplicate */                                 \
        family(relationCommands)      /* listRelatives listConnections ... */         \
        family(renameCommands)        /* rename lockNode namespace ... */             \
        family(shadingCommands)       /* shadingNode */                               \
        family(locatorCommands)       /* spaceLocator */                              \
        family(listCommands)          /* ls objExists nodeType */                     \
        family(selectCommands)        /* select selectMode hilite */                  \
        family(setCommands)           /* sets */                                      \
        family(freezeCommands)        /* makeIdentity */                              \
        family(matchCommands)         /* matchTransform */                            \
        family(moveCommands)          /* move rotate scale */                         \
        family(parentCommands)        /* parent */                                    \
        family(transformCommands)     /* xform */                                     \
        family(circleCommands)        /* circle */                                    \
        family(curveCommands)         /* curve */                                     \
        family(measureCommands)       /* arclen polyEvaluate pointPosition ... */     \
        family(polyCommands)          /* polyCube polyPlane polyCylinder */           \
        family(skinCommands)          /* skinCluster skinPercent dagPose ... */       \
        family(jointCommands)         /* joint */                                     \
        family(ikCommands)            /* ikHandle */                                  \
        family(constraintCommands)    /* parentConstraint ... poleVectorConstraint */ \
        family(keyCommands)           /* setKeyframe cutKey setDrivenKeyframe */      \
        family(keyEditCommands)       /* keyframe keyTangent findKeyframe */          \
        family(timeCommands)          /* currentTime playbackOptions play ... */      \
        family(aboutCommands)         /* about undoInfo upAxis ... */                 \
        family(optionVarCommands)     /* optionVar */                                 \
        family(coverageCommands)      /* hostCoverage */                              \
        family(renderCommands)        /* hostRender */                                \
        family(stateCommands)         /* hostState */

namespace torvel {

#define TORVEL_DECLARE(family) CommandTable family();
TORVEL_COMMAND_FAMILIES(TORVEL_DECLARE)
#undef TORVEL_DECLARE

void addSceneCommands(Session& session) {
#define TORVEL_ADD(family) session.addCommands(family());
    TORVEL_COMMAND_FAMILIES(TORVEL_ADD)
#undef TORVEL_ADD
}

}  // namespace torvel
