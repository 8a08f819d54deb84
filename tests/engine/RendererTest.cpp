#include "engine/Renderer.h"

#include <gtest/gtest.h>

namespace tallyvox {
namespace {

TEST(Renderer, SuccessiveCallsContinueWhereTheLastOneEnded) {
    Renderer renderer({{1, 2, 3}}, {true}, 2.0F, 1, false);
    std::vector<float> samples(6);
    OwnedBufferList list({1});
    list.buffers()[0].mData = samples.data();
    list.buffers()[0].mDataByteSize = 24;
    renderer.render(list.get());
    EXPECT_EQ(samples, (std::vector<float>{2, 4, 6, 0, 2, 4}));
    EXPECT_EQ(renderer.position(), 2);
    renderer.render(list.get());
    EXPECT_EQ(samples, (std::vector<float>{6, 0, 2, 4, 6, 0}));
    EXPECT_EQ(renderer.position(), 0);
}

}
}
