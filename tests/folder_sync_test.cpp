// Folders that cannot be synced.
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <cerrno>

#include "core_fixture.h"
#include "recovery.h"

namespace {

bool folders_cannot_be_synced = false;

}  // namespace

// In the place of the C library's, which names its parameter as a program may not.
// NOLINTNEXTLINE(readability-inconsistent-declaration-parameter-name)
int fsync(int fd) {
    struct stat file {};
    if (folders_cannot_be_synced && fstat(fd, &file) == 0 && S_ISDIR(file.st_mode)) {
        errno = EIO;
        return -1;
    }
    return static_cast<int>(syscall(SYS_fsync, fd));
}

namespace {

class FolderSync : public Core {};

// A new database that has moved into its place is the one that is stored to, although nobody knows whether it stays there.
TEST_F(FolderSync, FileInItsPlaceIsTheOneThatIsOpen) {
    folders_cannot_be_synced = true;
    EXPECT_EQ(rebuild_from_record(kCurrentVersion), Rebuilt::complete);
    EXPECT_EQ(copy_file(get_db_backup_path(), get_db_path()), -1);
    folders_cannot_be_synced = false;
    std::strcpy(r_.channel[0].name, "gate");
    EXPECT_EQ(call(EN_UPDATE_ONE_TABLE_RECORD, for_tables({3})), kStored);
    close_database();
    set_db_handle(db_open(get_db_path()));
    EXPECT_EQ(query("select name from chn_info"), "gate");
}

}  // namespace
