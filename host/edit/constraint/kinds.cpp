#include "edit/constraint/kinds.h"

namespace torvel {
namespace {

// The transform inputs stand before the weight in every `target` element; the connections are made
// in this order.
const std::vector<ConstraintLink> kPivotLinks = {{"targetTranslate", "translate"},
                                                 {"targetRotatePivot", "rotatePivot"},
                                                 {"targetRotateTranslate", "rotatePivotTranslate"},
                                                 {"targetParentMatrix", "parentMatrix[0]"}};
constexpr ConstraintLink kParentInverse = {"constraintParentInverseMatrix",
                                           "parentInverseMatrix[0]"};
constexpr ConstraintLink kOwnPivot = {"constraintRotatePivot", "rotatePivot"};
constexpr ConstraintLink kOwnPivotMove = {"constraintRotateTranslate", "rotatePivotTranslate"};
constexpr ConstraintLink kOwnOrder = {"constraintRotateOrder", "rotateOrder"};
constexpr ConstraintLink kOwnOrient = {"constraintJointOrient", "jointOrient", true};
constexpr ConstraintLink kOwnInverseScale = {"inverseScale", "inverseScale", true};
constexpr ConstraintLink kMoves = {"constraintTranslate", "translate"};
constexpr ConstraintLink kTurns = {"constraintRotate", "rotate"};

const ConstraintKind kKinds[] = {
    {"parentConstraint",
     {{"targetTranslate", "translate"},
      {"targetRotatePivot", "rotatePivot"},
      {"targetRotateTranslate", "rotatePivotTranslate"},
      {"targetRotate", "rotate"},
      {"targetRotateOrder", "rotateOrder"},
      {"targetJointOrient", "jointOrient", true},
      {"targetScale", "scale"},
      {"targetScaleCompensate", "segmentScaleCompensate", true},
      {"targetInverseScale", "inverseScale", true},
      {"targetParentMatrix", "parentMatrix[0]"}},
     {kOwnOrder, kParentInverse, kOwnPivot, kOwnPivotMove, kOwnOrient},
     {kMoves, kTurns},
     OffsetOf::Target,
     true,
     "blendParent1"},
    {"pointConstraint",
     kPivotLinks,
     {kParentInverse, kOwnPivot, kOwnPivotMove},
     {kMoves},
     OffsetOf::Translate,
     true,
     "blendPoint1"},
    {"orientConstraint",
     {{"targetRotate", "rotate"},
      {"targetRotateOrder", "rotateOrder"},
      {"targetJointOrient", "jointOrient", true},
      {"targetParentMatrix", "parentMatrix[0]"}},
     {kOwnOrder, kParentInverse, kOwnOrient, kOwnInverseScale},
     {kTurns},
     OffsetOf::Rotate,
     true,
     "blendOrient1"},
    {"scaleConstraint",
     {{"targetScale", "scale"}, {"targetParentMatrix", "parentMatrix[0]"}},
     {kParentInverse, {"constraintScaleCompensate", "segmentScaleCompensate", true}},
     {{"constraintScale", "scale"}},
     OffsetOf::Scale},
    {"aimConstraint",
     kPivotLinks,
     {kParentInverse,
      {"constraintTranslate", "translate"},
      kOwnPivot,
      kOwnPivotMove,
      kOwnOrder,
      kOwnOrient,
      kOwnInverseScale},
     {kTurns},
     OffsetOf::Rotate,
     false,
     "blendAim1"},
    {"poleVectorConstraint",
     kPivotLinks,
     {kParentInverse},
     {{"constraintTranslate", "poleVector"}},
     OffsetOf::Translate,
     true,
     nullptr,
     true},
};

}  // namespace

const ConstraintKind* constraintKind(std::string_view type) {
    for (const ConstraintKind& kind : kKinds)
        if (type == kind.type)
            return &kind;
    return nullptr;
}

}  // namespace torvel
