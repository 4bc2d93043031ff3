#pragma once

#include "graph/scene.h"

/// What playback and new keys go by. These values belong to the scene but are no attributes that
/// anybody lists.
namespace torvel {

enum class PlaySetting {
    AnimationStart,
    AnimationEnd,
    MinTime,
    MaxTime,
    By,
    MaxSpeed,
    Speed,
    Loop,
    View,
    InTangent,
    OutTangent
};

double playSetting(const Scene& scene, PlaySetting setting);
void setPlaySetting(Scene& scene, PlaySetting setting, double value);

}  // namespace torvel
