#include "text/result.h"

#include <cerrno>
#include <system_error>

namespace quill {
namespace {

ErrorCode code_of(int number) {
    switch (number) {
        case ENOENT:
            return ErrorCode::not_found;
        case EEXIST:
            return ErrorCode::exists;
        case EACCES:
        case EPERM:
        case EROFS:
        case ENOTDIR:
        case EISDIR:
        case ELOOP:
            return ErrorCode::access;
        case ENOSPC:
        case EDQUOT:
        case EFBIG:
            return ErrorCode::no_space;
        default:
            return ErrorCode::io;
    }
}

}  // namespace

Error system_error(int number) {
    return {code_of(number), 0, std::generic_category().message(number)};
}

}  // namespace quill
