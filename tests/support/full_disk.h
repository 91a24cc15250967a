#pragma once

#include "files/atomic_file.h"

#include <csignal>
#include <sys/resource.h>

namespace quill::tests {

/// Lets no file of this process grow beyond `bytes` while it lives, like a full disk.
class FullDisk {
  public:
    explicit FullDisk(rlim_t bytes) {
        files::let_oversized_writes_fail();
        getrlimit(RLIMIT_FSIZE, &before_);
        rlimit limit = before_;
        limit.rlim_cur = bytes;
        setrlimit(RLIMIT_FSIZE, &limit);
    }
    FullDisk(const FullDisk&) = delete;
    FullDisk& operator=(const FullDisk&) = delete;
    ~FullDisk() {
        setrlimit(RLIMIT_FSIZE, &before_);
        signal(SIGXFSZ, SIG_DFL);
    }

  private:
    rlimit before_ = {};
};

}  // namespace quill::tests
