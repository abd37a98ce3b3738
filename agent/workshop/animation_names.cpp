#include "agent/workshop/animation_names.h"

#include <array>

namespace agent {

std::span<const AnimationName> animationNames() {
    using enum Family;
    static constexpr auto names = std::to_array<AnimationName>({
        {"Acknowledge"},
        {"Alert"},
        {"Announce"},
        {"Blink"},
        {"Confused"},
        {"Congratulate"},
        {"Congratulate_2"},
        {"Decline"},
        {"DoMagic1"},
        {"DoMagic2"},
        {"DontRecognize"},
        {"Explain"},
        {"GestureDown"},
        {"GestureLeft"},
        {"GestureRight"},
        {"GestureUp"},
        {"GetAttention", held},
        {"GetAttentionContinued", held},
        {"GetAttentionReturn"},
        {"Greet"},
        {"Hearing_1"},
        {"Hearing_2"},
        {"Hearing_3"},
        {"Hearing_4"},
        {"Hide", leaving},
        {"Idle1_1"},
        {"Idle1_2"},
        {"Idle1_3"},
        {"Idle1_4"},
        {"Idle2_1"},
        {"Idle2_2"},
        {"Idle3_1"},
        {"Idle3_2"},
        {"LookDown", held},
        {"LookDownReturn"},
        {"LookLeft", held},
        {"LookLeftReturn"},
        {"LookRight", held},
        {"LookRightReturn"},
        {"LookUp", held},
        {"LookUpReturn"},
        {"MoveDown", looped},
        {"MoveLeft", looped},
        {"MoveRight", looped},
        {"MoveUp", looped},
        {"Pleased"},
        {"Process"},
        {"Processing", looped},
        {"Read", held},
        {"ReadContinued", held},
        {"ReadReturn"},
        {"Reading", looped},
        {"RestPose"},
        {"Sad"},
        {"Search"},
        {"Searching", looped},
        {"Show"},
        {"StartListening"},
        {"StopListening"},
        {"Suggest"},
        {"Surprised"},
        {"Think"},
        {"Thinking", looped},
        {"Uncertain"},
        {"Wave"},
        {"Write", held},
        {"WriteContinued", held},
        {"WriteReturn"},
        {"Writing", looped},
    });
    return names;
}

std::span<const std::string_view> mouthShapes() {
    static constexpr auto shapes =
        std::to_array<std::string_view>({"closed", "A", "E", "I", "O", "U", "F", "L", "M", "W"});
    return shapes;
}

}  // namespace agent
