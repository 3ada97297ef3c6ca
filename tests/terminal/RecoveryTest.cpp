#include <sys/socket.h>
#include <sys/un.h>
#include <unistd.h>

#include <csignal>
#include <filesystem>

#include "tests/terminal/EndToEnd.h"

class EndToEndRecoveryTest : public EndToEnd {};

TEST_F(EndToEndRecoveryTest, LoggerThatHangsAndIsRemovedDoesNotKeepTheDaemon) {
    ASSERT_NO_FATAL_FAILURE(StartHealthy());
    const std::string path = terminal_->Path(kSyslogSocket), hung = path + ".hung";
    std::filesystem::remove(path);
    sockaddr_un address = {AF_UNIX, ""};
    (void)path.copy(address.sun_path, sizeof(address.sun_path) - 1);
    const int logger = socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK, 0);
    ASSERT_EQ(bind(logger, reinterpret_cast<sockaddr*>(&address), sizeof(address)), 0);
    ASSERT_TRUE(terminal_->Signal(Only("keldra"), SIGKILL));
    char first = 0;  // "<" when it is the daemon's line
    ASSERT_TRUE(Becomes([&] { return recv(logger, &first, 1, 0) == 1 && first == '<'; }));
    std::filesystem::rename(path, hung);
    (void)hung.copy(address.sun_path, sizeof(address.sun_path) - 1);
    for (ssize_t sent = 0; sent != -1;) {
        const int fd = socket(AF_UNIX, SOCK_DGRAM | SOCK_NONBLOCK, 0);
        sent = sendto(fd, "", 1, 0, reinterpret_cast<sockaddr*>(&address), sizeof(address));
        close(fd);
    }
    ASSERT_TRUE(terminal_->Signal(Only("keldra_monitor"), SIGTERM));
    EXPECT_TRUE(Becomes([&] { return terminal_->Processes("keldra_monitor").empty(); }));
    close(logger);
}
