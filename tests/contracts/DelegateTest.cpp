#include "shell/contracts/base/Delegate.h"

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <utility>

namespace kivo {
namespace {

class Base {
public:
    virtual ~Base() = default;
    virtual void OnCall(int value) { log += "base" + std::to_string(value); }
    int OnOther(int value)
    {
        log += "other" + std::to_string(value);
        return value;
    }
    std::string log;
};

class Derived : public Base {
public:
    void OnCall(int value) override { log += "derived" + std::to_string(value); }
};

TEST(Delegate, CallsThroughTheVirtualFunction)
{
    Derived object;
    Delegate<int>(&object, &Base::OnCall)(3);
    Delegate<int>(&object, &Base::OnOther)(4);
    EXPECT_EQ(object.log, "derived3other4");
}

TEST(Delegate, IsEqualWhenObjectAndFunctionAre)
{
    Derived one;
    Derived two;
    using D = Delegate<int>;
    EXPECT_EQ(D(&one, &Base::OnCall), D(&one, &Base::OnCall));
    EXPECT_FALSE(D(&one, &Base::OnCall) == D(&two, &Base::OnCall));
    EXPECT_FALSE(D(&one, &Base::OnCall) == D(&one, &Base::OnOther));
    EXPECT_FALSE(D(&one, &Base::OnCall) == D());
    EXPECT_EQ(D(), D());
}

TEST(Delegate, AnEmptyOneDoesNothing)
{
    const Delegate<int> empty;
    EXPECT_FALSE(empty.IsSet());
    empty(1);
}

// Does at its call what the test says.
class Listener {
public:
    Listener(std::string name, std::string& log)
        : name_(std::move(name))
        , log_(log)
    {
    }
    void OnNotify()
    {
        log_ += name_;
        if (act)
            act();
    }
    [[nodiscard]] Delegate<> Get() { return {this, &Listener::OnNotify}; }

    std::function<void()> act;

private:
    std::string name_;
    std::string& log_;
};

class DelegateListTest : public testing::Test {
protected:
    DelegateListTest()
    {
        list_->Add(a_.Get());
        list_->Add(b_.Get());
        list_->Add(a_.Get()); // A double is no second entry.
    }
    std::string log_;
    Listener a_{"a", log_};
    Listener b_{"b", log_};
    Listener c_{"c", log_};
    std::unique_ptr<DelegateList<>> list_ = std::make_unique<DelegateList<>>();
};

TEST_F(DelegateListTest, CallsEachOnceInOrder)
{
    list_->Notify();
    EXPECT_EQ(log_, "ab");
}

TEST_F(DelegateListTest, AListenerThatLeftIsNotCalledAnyMore)
{
    a_.act = [this] { list_->Remove(b_.Get()); };
    list_->Notify();
    EXPECT_EQ(log_, "a");
}

TEST_F(DelegateListTest, AListenerThatCameHearsTheNextCall)
{
    a_.act = [this] { list_->Add(c_.Get()); };
    list_->Notify();
    EXPECT_EQ(log_, "ab");
    list_->Notify();
    EXPECT_EQ(log_, "ababc");
}

TEST_F(DelegateListTest, TheListMayGoDuringACall)
{
    a_.act = [this] { list_.reset(); };
    list_->Notify();
    EXPECT_EQ(log_, "a");
}

} // namespace
} // namespace kivo
