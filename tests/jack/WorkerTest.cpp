#include "platform/linux/jack/Worker.h"

#include <gmock/gmock.h>

#include <atomic>
#include <future>
#include <memory>
#include <vector>

namespace tallyvox {
namespace {

using namespace std::chrono_literals;
using testing::ElementsAre;

constexpr auto kLong = 30s;

/// A job that runs until it is let go.
class Hanging {
public:
    std::function<void()> job() {
        return [over = over_] { over.wait(); };
    }
    void letGo() { promise_.set_value(); }

private:
    std::promise<void> promise_;
    std::shared_future<void> over_ = promise_.get_future().share();
};

TEST(Worker, RunsJobsInTurn) {
    Worker worker;
    auto order = std::make_shared<std::vector<int>>();
    worker.post([order] { order->push_back(1); });
    worker.post([order] { order->push_back(2); });
    EXPECT_TRUE(worker.run([order] { order->push_back(3); }, kLong));
    EXPECT_THAT(*order, ElementsAre(1, 2, 3));
    EXPECT_EQ(worker.silence(), 0ms);
}

TEST(Worker, GivesUpOnAJobThatHangs) {
    Hanging hanging;
    Worker worker;
    EXPECT_FALSE(worker.run(hanging.job(), 1ms));
    EXPECT_GE(worker.silence(), 1ms);
    hanging.letGo();
}

TEST(Worker, WaitsForAJobThatShowsSignsOfLife) {
    Worker worker;
    const auto slow = [] {
        const auto end = std::chrono::steady_clock::now() + 400ms;
        while (std::chrono::steady_clock::now() < end)
            Worker::proceeding();
    };
    EXPECT_TRUE(worker.run(slow, 200ms));
}

TEST(Worker, GivesUpAtTheLimitOnAJobThatShowsSignsOfLife) {
    std::atomic<bool> over = false;
    Worker worker;
    const auto lively = [&over] {
        while (!over)
            Worker::proceeding();
    };
    EXPECT_FALSE(worker.run(lively, kLong, 1ms));
    EXPECT_LT(worker.silence(), kLong);
    over = true;
}

TEST(Worker, AnswersAtOnceAndDropsJobsWhileAnEarlierOneHangs) {
    Hanging hanging;
    const auto ran = std::make_shared<std::atomic<bool>>(false);
    {
        Worker worker;
        EXPECT_FALSE(worker.run(hanging.job(), 1ms));
        EXPECT_FALSE(worker.run([ran] { *ran = true; }, 1ms));
        hanging.letGo();
    }
    EXPECT_FALSE(*ran);
}

TEST(Worker, ServesAgainWhenTheLateJobIsDone) {
    Hanging hanging;
    Worker worker;
    EXPECT_FALSE(worker.run(hanging.job(), 1ms));
    std::promise<void> done;
    worker.post([&done] { done.set_value(); });
    hanging.letGo();
    done.get_future().wait();
    while (worker.silence() != 0ms)
        std::this_thread::yield();
    EXPECT_TRUE(worker.run([] {}, kLong));
}

TEST(Worker, FinishesItsJobsAtTheEnd) {
    const auto ran = std::make_shared<std::atomic<int>>(0);
    {
        Worker worker;
        for (int i = 0; i < 10; ++i)
            worker.post([ran] { ++*ran; });
    }
    EXPECT_EQ(*ran, 10);
}

TEST(Worker, LeavesAHangingThreadBehind) {
    Hanging hanging;
    std::weak_ptr<int> owned;
    {
        Worker worker;
        auto shared = std::make_shared<int>(1);
        owned = shared;
        const auto job = hanging.job();
        EXPECT_FALSE(worker.run([job, shared = std::move(shared)] { job(); }, 1ms));
    }
    EXPECT_FALSE(owned.expired()) << "the job lost what it still works with";
    hanging.letGo();
    while (!owned.expired())
        std::this_thread::yield();
}

}
}
