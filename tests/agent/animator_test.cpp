#include "agent/animator.h"

#include <gtest/gtest.h>

#include <cmath>

namespace {

using namespace agent;
using namespace std::chrono_literals;

// An arm with a hand: one bone that turns, one that hangs on it.
Rig makeRig() {
    Rig rig{.name = "Stick", .width = 100, .height = 100, .bones = {}, .rest = {}, .clips = {}, .voice = {}};
    rig.bones.push_back({.id = "arm", .parent = {}, .pivotX = 50, .pivotY = 50, .slots = {{"", "arm"}}});
    rig.bones.push_back({.id = "hand",
                         .parent = 0,
                         .pivotX = 50,
                         .pivotY = 60,
                         .z = -1,
                         .slots = {{"open", "palm"}, {"off", ""}}});
    rig.rest = {BoneState{}, BoneState{}};
    rig.rest[1][Channel::z] = -1;
    return rig;
}

Pose turned(const Rig& rig, double degrees, std::size_t slot = 0) {
    Pose pose = rig.rest;
    pose[0][Channel::rot] = degrees;
    pose[1].slot = slot;
    return pose;
}

Clip makeClip(const Rig& rig, std::string name) {
    Clip clip;
    clip.name = std::move(name);
    clip.keys = {{0ms, Ease::linear, turned(rig, 0)},
                 {200ms, Ease::linear, turned(rig, 90, 1)},
                 {400ms, Ease::linear, turned(rig, 40)}};
    return clip;
}

TEST(PoseAt, InterpolatesChannelsAndKeepsASlotUntilItsKey) {
    const Rig rig = makeRig();
    const Clip clip = makeClip(rig, "Lift");
    EXPECT_DOUBLE_EQ(poseAt(clip, 100ms)[0][Channel::rot], 45);
    EXPECT_EQ(poseAt(clip, 199ms)[1].slot, 0U);
    EXPECT_EQ(poseAt(clip, 200ms)[1].slot, 1U);
    EXPECT_DOUBLE_EQ(poseAt(clip, 9s)[0][Channel::rot], 40);
    EXPECT_DOUBLE_EQ(poseAt(clip, -1s)[0][Channel::rot], 0);
}

TEST(PoseAt, GoesInThreeJerksWithHaltsBetween) {
    const Rig rig = makeRig();
    Clip clip = makeClip(rig, "Lift");
    clip.keys[1] = {300ms, Ease::steps, turned(rig, 90)};
    const auto degrees = [&clip](Milliseconds time) { return poseAt(clip, time)[0][Channel::rot]; };
    EXPECT_NEAR(degrees(60ms), 30, 1e-9);
    EXPECT_NEAR(degrees(99ms), 30, 1e-9);
    EXPECT_GT(degrees(120ms), 30);
    EXPECT_NEAR(degrees(199ms), 60, 1e-9);
    EXPECT_NEAR(degrees(299ms), 90, 1e-9);
}

TEST(PlaceParts, ChildrenFollowTheirParentAndStandAtTheirDepth) {
    const Rig rig = makeRig();
    const auto parts = placeParts(rig, turned(rig, 90));
    ASSERT_EQ(parts.size(), 2U);
    EXPECT_EQ(parts[0].art, "palm");
    // A quarter turn clockwise brings what hangs below the pivot to its left.
    const Affine& hand = parts[0].transform;
    EXPECT_NEAR(hand.a * 50 + hand.c * 60 + hand.e, 40, 1e-9);
    EXPECT_NEAR(hand.b * 50 + hand.d * 60 + hand.f, 50, 1e-9);
    EXPECT_EQ(placeParts(rig, turned(rig, 0, 1)).size(), 1U);
}

TEST(PlaceParts, AMirroredBoneIsReflectedAboutTheMiddleOfTheFigure) {
    Rig rig = makeRig();
    rig.bones[0].mirror = true;
    rig.bones[0].pivotX = 30;
    const auto parts = placeParts(rig, turned(rig, 0));
    for (const auto& part : parts) EXPECT_NEAR(part.transform.a * 20 + part.transform.e, 80, 1e-9);
}

TEST(Animator, HoldsTheLastPoseAndLeavesItByItsReturnClip) {
    Rig rig = makeRig();
    rig.clips = {makeClip(rig, "Look"), makeClip(rig, "LookReturn")};
    rig.clips[0].next = "lookreturn";
    rig.clips[1].keys = {{0ms, Ease::linear, turned(rig, 40)}, {1s, Ease::linear, rig.rest}};
    Animator animator(rig);
    animator.start(rig.clips[0], 0ms);
    animator.advance(5s);
    EXPECT_FALSE(animator.moving());
    EXPECT_FALSE(animator.atRest());
    animator.settle(6s);
    animator.advance(6500ms);
    EXPECT_DOUBLE_EQ(animator.pose()[0][Channel::rot], 20);
    animator.advance(8s);
    EXPECT_TRUE(animator.atRest());
}

TEST(Animator, ALoopRepeatsUntilLeftAndItsExitBeginsAtOnce) {
    Rig rig = makeRig();
    rig.clips = {makeClip(rig, "Write")};
    rig.clips[0].loop = {0ms, 200ms};
    rig.clips[0].free = 100ms;
    Animator animator(rig);
    animator.start(rig.clips[0], 0ms);
    EXPECT_FALSE(animator.free());
    animator.advance(300ms);
    EXPECT_TRUE(animator.free());
    EXPECT_DOUBLE_EQ(animator.pose()[0][Channel::rot], 45);
    animator.advance(1h + 250ms);
    EXPECT_DOUBLE_EQ(animator.pose()[0][Channel::rot], 22.5);
    animator.leaveLoop(1h + 250ms);
    animator.advance(1h + 250ms);
    EXPECT_DOUBLE_EQ(animator.pose()[0][Channel::rot], 22.5) << "no jump";
    animator.advance(1h + 430ms);
    EXPECT_DOUBLE_EQ(animator.pose()[0][Channel::rot], 45);
    animator.advance(1h + 450ms);
    EXPECT_FALSE(animator.moving());
}

TEST(Animator, AClipThatBreaksInBeginsFromThePoseThatStands) {
    Rig rig = makeRig();
    rig.clips = {makeClip(rig, "Lift"), makeClip(rig, "Other")};
    Animator animator(rig);
    animator.start(rig.clips[0], 0ms);
    animator.advance(200ms);
    animator.start(rig.clips[1], 200ms);
    EXPECT_DOUBLE_EQ(animator.pose()[0][Channel::rot], 90);
    animator.settle(210ms);
    EXPECT_GT(animator.pose()[0][Channel::rot], 80);
    animator.advance(1s);
    EXPECT_TRUE(animator.atRest());
}

}  // namespace
