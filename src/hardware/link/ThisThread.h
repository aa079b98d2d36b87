#pragma once

namespace kalvio {

// What the locks keep for each thread. Constant at first and at a fixed place, so that looking at it, which
// every command does, costs no call.
struct ThisThread {
    int quietScopes = 0;
    bool boxesWait = false; // until the last quiet scope ends
};

[[gnu::tls_model("initial-exec")]] extern constinit thread_local ThisThread thisThread;

} // namespace kalvio
