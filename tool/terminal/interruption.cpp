#include "tool/terminal/interruption.h"

#include <pthread.h>

#include <cerrno>
#include <csignal>

#include "chain/whole_file.h"
#include "host/include/pxkhost.h"
#include "tool/terminal/progress_bar.h"

namespace pxk::tool {
namespace {

// Only the main thread writes files, so that none appears while it is in the handler.
pthread_t mainThread;

extern "C" void cleanUp(int signal) {
    if (::pthread_equal(::pthread_self(), mainThread) == 0) {
        const int error = errno;
        ::pthread_kill(mainThread, signal);
        errno = error;
        return;
    }
    pxk_remove_unfinished_files();
    chain::removeUnfinishedFile();
    ProgressBar::eraseInterrupted();
    std::signal(signal, SIG_DFL);
    // Blocked until the handler returns.
    std::raise(signal);
}

}  // namespace

void leaveNothingWhenInterrupted() {
    mainThread = ::pthread_self();
    struct sigaction action {};
    action.sa_handler = cleanUp;
    ::sigfillset(&action.sa_mask);
    for (const int signal : {SIGINT, SIGTERM, SIGHUP, SIGXFSZ}) {
        struct sigaction before {};
        ::sigaction(signal, nullptr, &before);
        if (before.sa_handler != SIG_IGN) ::sigaction(signal, &action, nullptr);
    }
}

}  // namespace pxk::tool
