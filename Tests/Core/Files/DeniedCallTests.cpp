#include "Support/DeniedCall.h"
#include "Support/HistoryFolder.h"
#include "Support/HistoryRecords.h"
#include "TallyfoxCore/Files/LocalUsageScanner.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <sys/syscall.h>

/// Scans where the kernel, or a sandbox around the program, refuses a call.
namespace tallyfox::test {
namespace {

class DeniedCall : public HistoryFolder {
protected:
    void SetUp() override
    {
        if (statusWithDeniedCall(SYS_acct, ENOSYS, [] { return 0; }) == denialIsImpossible)
            GTEST_SKIP() << "this system allows no filter of system calls";
    }

    /// Scans three histories. The error, or 100 plus the number of samples.
    int scanWithout(int call, int error)
    {
        write("a.jsonl", claudeLine());
        write("folder/b.jsonl", claudeLine());
        write("folder/in/folder/c.jsonl", claudeLine());
        return statusWithDeniedCall(call, error, [this] {
            const auto result = LocalUsageScanner::scanResult(Provider::claude, root());
            if (errorOf(result))
                return errorOf(result).value();
            return 100 + static_cast<int>(std::get<LocalUsageScanResult>(result).samples.size());
        });
    }
};

TEST_F(DeniedCall, scanWorksOnAKernelWithoutOpenat2)
{
    EXPECT_EQ(scanWithout(SYS_openat2, ENOSYS), 103);
}

TEST_F(DeniedCall, scanWorksInASandboxThatDeniesOpenat2)
{
    EXPECT_EQ(scanWithout(SYS_openat2, EPERM), 103);
    EXPECT_EQ(scanWithout(SYS_openat2, EACCES), 100) << "no folder could be entered, not even the first";
}

TEST_F(DeniedCall, fileThatCannotBeReadFailsTheScanWithTheSystemsError)
{
    EXPECT_EQ(scanWithout(SYS_pread64, EIO), EIO);
    const auto scan = [this] { return errorOf(LocalUsageScanner::scan(Provider::claude, root())).value(); };
    EXPECT_EQ(statusWithDeniedCall(SYS_pread64, EIO, scan), EIO);
}

TEST_F(DeniedCall, filesThatCannotBeExaminedAreSkipped)
{
    EXPECT_EQ(scanWithout(SYS_newfstatat, EIO), 100);
}

TEST_F(DeniedCall, foldersThatCannotBeListedAreSkipped)
{
    EXPECT_EQ(scanWithout(SYS_getdents64, EIO), 100);
}

} // namespace
} // namespace tallyfox::test
