#include "Hardening.h"

#include <cerrno>
#include <climits>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/auxv.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

bool sanitizeFileDescriptors() {
    for (int fd = 0; fd <= 2; ++fd) {
        if (::fcntl(fd, F_GETFD) == -1 && errno == EBADF) {
            // open() returns the lowest free descriptor, which is `fd`.
            if (::open("/dev/null", O_RDWR) != fd)
                return false;
        }
    }
    if (::close_range(3, ~0U, 0) == 0)
        return true;
    struct rlimit limit {};
    rlim_t highest = 65536;
    if (::getrlimit(RLIMIT_NOFILE, &limit) == 0 && limit.rlim_cur < highest)
        highest = limit.rlim_cur;
    for (rlim_t fd = 3; fd < highest; ++fd)
        ::close(static_cast<int>(fd));
    return true;
}

void resetProcessEnvironment() {
    ::umask(077);
    // Wipe the strings as well, so the block /proc shows for us holds nothing of the caller's.
    for (char** variable = environ; variable != nullptr && *variable != nullptr; ++variable)
        std::memset(*variable, 0, std::strlen(*variable));
    ::clearenv();
}

bool runsWithRaisedPrivileges() {
    return ::getauxval(AT_SECURE) != 0;
}

bool dropPrivileges(std::string& error) {
    const uid_t uid = ::getuid();
    const gid_t gid = ::getgid();
    if (::setresgid(gid, gid, gid) != 0 || ::setresuid(uid, uid, uid) != 0) {
        error = "cannot drop privileges";
        return false;
    }
    uid_t ruid = 0, euid = 0, suid = 0;
    gid_t rgid = 0, egid = 0, sgid = 0;
    if (::getresuid(&ruid, &euid, &suid) != 0 || ::getresgid(&rgid, &egid, &sgid) != 0 ||
        euid != uid || suid != uid || egid != gid || sgid != gid ||
        (uid != 0 && ::setuid(0) == 0)) {
        error = "privileges are still raised after dropping them";
        return false;
    }
    if (::prctl(PR_SET_DUMPABLE, 0, 0, 0, 0) != 0 ||
        ::prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0) != 0) {
        error = "cannot lock down the process";
        return false;
    }
    return true;
}
