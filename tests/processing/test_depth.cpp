// UpdateDepth's choice between bottom track and echo sounder, GetDepth's modes and the
// transducer depth.

#include <gtest/gtest.h>

#include "processing/chain_fixture.h"
#include "processing/processing_steps.h"

namespace rm::test {
namespace {

class DepthTest : public ChainFixture {
protected:
    void SetUp() override {
        Build(kCoordEnu);
        data.user.SensorDepth = 20;  // T = 0.2 m
        Beams({3.0f, 4.0f, 5.0f, 4.0f}, 1);
    }
    void Beams(std::array<float, 4> depth, uint8_t flag) {
        slots[0].bottomTrack.Depth = depth;
        slots[0].bottomTrack.flag = flag;
    }
    void Echo(float depth, uint8_t status) {
        state.echoDepthSeen = true;
        slots[0].echoDepth = depth;
        slots[0].echoStatus = status;
    }
    void Update(bool swap = true) { UpdateDepth(ctx, 0, swap); }
    float Mean() const { return slots[0].meanDepth; }
    float Min() const { return slots[0].minDepth; }
    int Status() const { return slots[0].processed.DepthStatus; }
};

TEST_F(DepthTest, BottomTrackGivesMeanAndMinimumBelowTheSurface) {
    Update();
    EXPECT_FLOAT_EQ(Mean(), 4.2f);
    EXPECT_FLOAT_EQ(Min(), 3.2f);
    EXPECT_EQ(Status(), 1);
    EXPECT_DOUBLE_EQ(GetDepth(ctx, 0, 0), Mean());
    EXPECT_NEAR(GetDepth(ctx, 0, 1), 3.0, 1e-6);
    settings.EchoTransducerDepth = 1.5;
    EXPECT_NEAR(GetDepth(ctx, 0, 2), 2.7, 1e-6);  // 4.2 - 1.5 is below 3.0
    EXPECT_DOUBLE_EQ(GetDepth(ctx, 0, 7), Mean());
}

TEST_F(DepthTest, BeamsWithoutDepthAndNoEchoLeaveMissingWithStatusBad) {
    Beams({0.0f, MissingValueF, 0.0f, MissingValueF}, 1);
    Update();
    EXPECT_EQ(Mean(), MissingValueF);
    EXPECT_EQ(Min(), MissingValueF);
    EXPECT_EQ(Status(), 0);
    EXPECT_EQ(GetDepth(ctx, 0, 1), MissingValue);
}

TEST_F(DepthTest, BadBottomTrackSwapsToAGoodEchoOnlyWhenAllowed) {
    Beams({3.0f, 4.0f, 5.0f, 4.0f}, 0);
    Echo(6.0f, 2);
    Update(false);
    EXPECT_FLOAT_EQ(Mean(), 4.2f);
    EXPECT_EQ(Status(), 0);
    Update(true);
    EXPECT_FLOAT_EQ(Mean(), 6.0f);
    EXPECT_FLOAT_EQ(Min(), 6.0f);
    EXPECT_EQ(Status(), 1);
}

TEST_F(DepthTest, PreferredEchoKeepsItsBadValueWithoutSwap) {
    settings.UseEchoSounderForDepth = 1;
    Echo(2.5f, 3);
    Update(false);
    EXPECT_FLOAT_EQ(Mean(), 2.5f);
    EXPECT_FLOAT_EQ(Min(), 2.5f);  // smaller than the beams' 3.2
    EXPECT_EQ(Status(), 0);
    Update(true);
    EXPECT_FLOAT_EQ(Mean(), 4.2f);
    EXPECT_EQ(Status(), 1);
}

TEST_F(DepthTest, WithoutBottomTrackThePreferredEchoIsItsOwnMinimumAndNoSensorIsStatusTwo) {
    data.user.BottomTrack = 0;
    Derive();
    for (int preferEcho : {0, 1}) {
        settings.UseEchoSounderForDepth = preferEcho;
        Update();
        EXPECT_EQ(Status(), 2);
        EXPECT_EQ(Mean(), MissingValueF);
    }
    Echo(7.5f, 2);
    Update();
    EXPECT_FLOAT_EQ(Mean(), 7.5f);
    EXPECT_FLOAT_EQ(Min(), 7.5f);
    EXPECT_EQ(Status(), 1);
}

TEST_F(DepthTest, TransducerBelowTheMinimumGivesANegativeDepthBelowIt) {
    settings.DepthType = 1;
    settings.UserTransducerDepth = 5.0;
    Update();
    EXPECT_FLOAT_EQ(Min(), 8.0f);
    settings.UserTransducerDepth = 9.0;  // changed after the depth was stored
    EXPECT_NEAR(GetDepth(ctx, 0, 1), -1.0, 1e-6);
}

TEST_F(DepthTest, TransducerDepthByTypeNeverNegative) {
    EXPECT_DOUBLE_EQ(GetTransducerDepth(ctx), 0.2);
    settings.DepthType = 1;
    settings.UserTransducerDepth = -0.4;
    EXPECT_DOUBLE_EQ(GetTransducerDepth(ctx), 0.0);
    settings.DepthType = 2;
    EXPECT_DOUBLE_EQ(GetTransducerDepth(ctx), 0.0);
}

}  // namespace
}  // namespace rm::test
