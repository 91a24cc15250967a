#include "picture/decoder.h"
#include "picture/line.h"
#include "picture/sandbox.h"
#include "worker/message.h"

#include <QCoreApplication>

#include <csignal>
#include <malloc.h>
#include <sys/prctl.h>

/// quillpicture: decodes pictures for the program that started it, which communicates with it over descriptor 3. It
/// opens nothing after it has reported that it is ready.
int main(int argc, char** argv) {
    using namespace quill;
    prctl(PR_SET_PDEATHSIG, SIGKILL, 0, 0, 0);
    mallopt(M_ARENA_MAX, 1);  // one heap, bounded by the memory limit
    const QCoreApplication application(argc, argv);
    picture::warm_up();
    const picture::Sandbox sandbox = picture::close_sandbox(worker::line_descriptor);
    const worker::Hello hello{worker::Hello::right_magic, sandbox.seccomp, sandbox.landlock};
    if (!worker::send_message(worker::line_descriptor, &hello, sizeof hello, -1)) return 1;
    picture::serve(worker::line_descriptor);
    return 0;
}
