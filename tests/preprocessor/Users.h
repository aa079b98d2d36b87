#pragma once

// Watches by name, who hears of their ends, and what those do then. Operations of scenarios:
//
//   user W [told] [noted]   by the main window, by event and status    start W, abort W, ask W, request W,
//   drop W on N drop|again|unnoted W   at the Nth report: the watch goes, is asked again, is in neither event
//   nor status reported N, in all   reports STATE…, since last   state W STATE   noted W STATE   not-noted W

#include "support/Scenarios.h"
#include "support/StateNames.h"
#include "support/TestHost.h"

#include <utility>

namespace kalvio::test {

template<typename Watcher>
class Users {
public:
    explicit Users(TestHost& host) : m_host(host) {
        host.mainWindow.onMessage = [this](const RecordingWindow::Message& message) {
            EXPECT_EQ(message.id, 0x8038U);
            EXPECT_EQ(message.lParam, 0);
            Act(m_acts[++m_reported]);
        };
    }

    // A watch that nobody hears of when it is not there.
    Watcher& operator[](const std::string& name) {
        if (m_users[name].watcher == nullptr) {
            Make(m_users[name], false, false);
        }
        return *m_users[name].watcher;
    }

    std::map<std::string, std::function<void(Words)>>
    With(std::map<std::string, std::function<void(Words)>> others) {
        others.merge(m_operations);
        return others;
    }

    std::function<void()> beforeAgain;

private:
    struct User {
        CEvent done;
        int status = -1;
        std::unique_ptr<Watcher> watcher;
    };

    void Make(User& user, bool told, bool noted) {
        user.watcher =
            std::make_unique<Watcher>(told ? &m_host.mainWindow : nullptr, noted ? &user.done : nullptr,
                                      noted ? &user.status : nullptr);
    }

    void Act(const std::pair<std::string, std::string>& act) {
        User& user = m_users[act.second];
        if (act.first == "drop") {
            user.watcher.reset();
        } else if (act.first == "again") {
            if (beforeAgain) {
                beforeAgain();
            }
            user.watcher->StartAndRequestNotification();
        } else if (act.first == "unnoted") {
            EXPECT_FALSE(user.done.IsSet());
            EXPECT_EQ(user.status, -1);
        }
    }

    static NPreProcessor::EResult StateOf(Watcher& watcher) {
        if constexpr (requires { watcher.GetStatus(); }) {
            return watcher.GetStatus();
        } else {
            return watcher.GetStatus(nullptr, 0);
        }
    }

    void ExpectReports(Words w) {
        PumpMessages();
        std::vector<int> expected;
        std::transform(w.begin(), w.end(), std::back_inserter(expected), StateNamed);
        std::vector<int> states;
        for (const RecordingWindow::Message& message : std::exchange(m_host.mainWindow.messages, {})) {
            states.push_back(static_cast<int>(message.wParam));
        }
        EXPECT_EQ(states, expected);
    }

    TestHost& m_host;
    int m_reported = 0;
    std::map<int, std::pair<std::string, std::string>> m_acts; // at which report
    std::map<std::string, User> m_users;
    std::map<std::string, std::function<void(Words)>> m_operations{
        {"user",
         [this](Words w) {
             const auto has = [w](const char* word) {
                 return std::find(w.begin() + 1, w.end(), word) != w.end();
             };
             Make(m_users[w[0]], has("told"), has("noted"));
         }},
        {"start", [this](Words w) { (*this)[w[0]].Start(1); }},
        {"abort", [this](Words w) { (*this)[w[0]].Start(0); }},
        {"ask", [this](Words w) { (*this)[w[0]].StartAndRequestNotification(); }},
        {"request", [this](Words w) { (*this)[w[0]].RequestNotification(); }},
        {"drop", [this](Words w) { m_users[w[0]].watcher.reset(); }},
        {"on",
         [this](Words w) {
             m_acts[std::stoi(w[0])] = {w[1], w[2]};
         }},
        {"reported", [this](Words w) { EXPECT_EQ(m_reported, std::stoi(w[0])); }},
        {"reports", [this](Words w) { ExpectReports(w); }},
        {"state", [this](Words w) { EXPECT_EQ(StateOf((*this)[w[0]]), StateNamed(w[1])); }},
        {"noted",
         [this](Words w) {
             EXPECT_TRUE(m_users[w[0]].done.TryTake());
             EXPECT_EQ(std::exchange(m_users[w[0]].status, -1), StateNamed(w[1]));
         }},
        {"not-noted", [this](Words w) { EXPECT_FALSE(m_users[w[0]].done.TryTake()); }},
    };
};

} // namespace kalvio::test
