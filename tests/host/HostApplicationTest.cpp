// The application object: view updates across threads, windows, documents; trees and printing.

#include "platform/Thread.h"
#include "support/TestHost.h"

#include <gtest/gtest.h>

namespace {

using namespace kalvio;
using kalvio::test::TestHost;

class NotingView : public CView {
public:
    void OnUpdate(CView* sender, int hint, void* object) override {
        hints.push_back(hint);
        lastSender = sender;
        lastObject = object;
        if (onUpdate) {
            onUpdate();
        }
    }
    std::vector<int> hints;
    CView* lastSender = nullptr;
    void* lastObject = nullptr;
    std::function<void()> onUpdate;
};

TEST(ViewUpdates, EveryViewButTheSenderIsTold) {
    TestHost host;
    NotingView sender;
    NotingView other;
    auto closing = std::make_unique<NotingView>();
    other.onUpdate = [&closing] { closing.reset(); };
    int object = 0;
    UpdateViews(&sender, 2640, &object, 0);
    EXPECT_TRUE(sender.hints.empty());
    EXPECT_EQ(other.hints, std::vector<int>{2640});
    EXPECT_EQ(other.lastSender, &sender);
    EXPECT_EQ(other.lastObject, &object);
    EXPECT_EQ(closing, nullptr); // closed by the other's update, and not told after that
    ASSERT_EQ(host.hints.size(), 1U);
}

TEST(ViewUpdates, FromAnotherThreadTheyWaitForTheMessageLoop) {
    TestHost host;
    NotingView view;
    const auto worker = Thread::Start([&view] {
        UpdateViews(&view, 4310, &view, 1);
        UpdateViews(nullptr, 4310, nullptr, 1); // waits already
        UpdateViews(nullptr, 4343, nullptr, 1);
    });
    ASSERT_TRUE(worker->WaitForEnd(10000));
    EXPECT_TRUE(view.hints.empty());
    host.application.DoMessageLoop();
    EXPECT_EQ(view.hints, (std::vector<int>{4310, 4343}));
    EXPECT_EQ(view.lastSender, nullptr);
    EXPECT_EQ(view.lastObject, nullptr);
    host.application.DoMessageLoop();
    EXPECT_EQ(host.hints.size(), 2U);
}

TEST(ViewUpdates, ObserversMayRemoveThemselves) {
    TestHost host;
    int told = 0;
    int token = 0;
    token = host.application.AddViewObserver([&](CView*, int, void*, int) {
        ++told;
        host.application.RemoveViewObserver(token);
    });
    UpdateViews(nullptr, 1, nullptr, 0);
    UpdateViews(nullptr, 1, nullptr, 0);
    EXPECT_EQ(told, 1);
    EXPECT_EQ(host.hints.size(), 2U);
}

TEST(HostApplication, DocumentsByControl) {
    TestHost host;
    struct Row {
        int ctrlID;
        const CSettingsData* document;
    };
    const Row rows[] = {{4021, &host.generator}, {4118, &host.generator}, {4306, &host.generator},
                        {4343, &host.generator}, {4300, &host.generator}, {4008, &host.generator},
                        {3208, &host.analyser},  {3352, &host.analyser},  {3057, &host.analyser},
                        {4301, nullptr},         {9991, nullptr},         {65535, nullptr}};
    for (const Row& row : rows) {
        EXPECT_EQ(host.application.GetDocForID(row.ctrlID), row.document) << row.ctrlID;
    }
}

TEST(HostApplication, SettingsWindowsAreFoundByType) {
    TestHost host;
    EXPECT_EQ(host.application.FindSettingsWindow(26), nullptr);
    CView view;
    {
        CTypedFrameWnd frame;
        frame.MoveWindow({5, 5, 105, 55});
        frame.SetWindowType(26, -1);
        const CPoint where{10, 20};
        EXPECT_EQ(host.application.CreateSettingsWindow(1, &view, &frame, &where), &frame);
        EXPECT_EQ(host.application.FindSettingsWindow(26), &frame);
        EXPECT_EQ(frame.GetWindowRect().right, 110);
        EXPECT_EQ(frame.GetWindowRect().bottom, 70);
        EXPECT_EQ(host.application.CreateSettingsWindow(1, nullptr, &frame, nullptr), nullptr);
    }
    EXPECT_EQ(host.application.FindSettingsWindow(26), nullptr);
}

TEST(Trees, SaveTableKeepsOrderAndTicks) {
    CConfigTreeCtrl tree;
    const HTREEITEM group = tree.AddCheckItem(nullptr, "Settling", 300, true);
    for (int id = 301; id < 400; ++id) {
        tree.AddCheckItem(group, "Group", id, id % 2 == 0);
    }
    tree.SetTicked(tree.GetChildItem(group), true);
    int expected = 301;
    for (HTREEITEM item = tree.GetChildItem(group); item != nullptr; item = tree.GetNextSiblingItem(item)) {
        int id = 0;
        bool ticked = false;
        tree.GetItemDetails(item, id, ticked);
        EXPECT_EQ(id, expected);
        EXPECT_EQ(ticked, id == 301 || id % 2 == 0);
        ++expected;
    }
    EXPECT_EQ(expected, 400);
    EXPECT_EQ(tree.GetChildItem(tree.GetRootItem()), group);
    EXPECT_EQ(tree.GetNextSiblingItem(group), nullptr);
}

} // namespace
