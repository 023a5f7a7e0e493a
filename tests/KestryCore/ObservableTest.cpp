#include "Observable.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace KestryCore {
namespace {

class ObservableTest : public testing::Test {
protected:
    Subscription record()
    {
        return value.observe([this](int seen) { values.push_back(seen); });
    }

    Observable<int> value{1};
    std::vector<int> values;
};

TEST_F(ObservableTest, ObserversAreToldAfterTheAssignment)
{
    const Subscription subscription = value.observe([this](int seen) { values = {seen, *value}; });
    value.assign(2);
    EXPECT_EQ(values, (std::vector{2, 2}));
}

TEST_F(ObservableTest, SubscribingTellsNothing)
{
    const Subscription subscription = record();
    EXPECT_TRUE(values.empty());
}

TEST_F(ObservableTest, AnEqualValueIsToldToo)
{
    const Subscription subscription = record();
    value.assign(1);
    value.assign(1);
    EXPECT_EQ(values, (std::vector{1, 1}));
}

TEST_F(ObservableTest, AllObserversAreToldInTheOrderOfSubscribing)
{
    const Subscription first = value.observe([this](int) { values.push_back(1); });
    const Subscription second = value.observe([this](int) { values.push_back(2); });
    value.assign(7);
    EXPECT_EQ(values, (std::vector{1, 2}));
}

TEST_F(ObservableTest, NothingIsToldOnceTheSubscriptionHasGone)
{
    {
        const Subscription subscription = record();
    }
    value.assign(2);
    EXPECT_TRUE(values.empty());
}

TEST_F(ObservableTest, AnObserverMayUnsubscribeItselfAndOthers)
{
    Subscription other;
    Subscription self = value.observe([&](int seen) {
        values.push_back(seen);
        other = {};
        self = {};
    });
    other = record();
    value.assign(2);
    value.assign(3);
    EXPECT_EQ(values, (std::vector{2}));
}

TEST_F(ObservableTest, AnObserverThatSubscribesIsHeardFromTheNextAssignment)
{
    Subscription late;
    const Subscription first = value.observe([&](int seen) {
        if (seen == 2) {
            late = record();
        }
    });
    value.assign(2);
    EXPECT_TRUE(values.empty());
    value.assign(3);
    EXPECT_EQ(values, (std::vector{3}));
}

TEST_F(ObservableTest, AnObserverMayAssign)
{
    const Subscription subscription = value.observe([&](int seen) {
        values.push_back(seen);
        if (seen < 4) {
            value.assign(seen + 1);
        }
    });
    value.assign(2);
    EXPECT_EQ(values, (std::vector{2, 3, 4}));
    EXPECT_EQ(*value, 4);
}

TEST_F(ObservableTest, ASubscriptionMayOutliveWhatItObserved)
{
    Subscription subscription;
    {
        const Observable<std::string> shortLived{"gone"};
        subscription = shortLived.observe([](const std::string&) {});
    }
    subscription = {};
    EXPECT_TRUE(values.empty());
}

} // namespace
} // namespace KestryCore
