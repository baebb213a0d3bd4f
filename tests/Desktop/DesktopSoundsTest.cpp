#include "Platform/Linux/DesktopSounds.h"
#include "Fakes/PrivateHome.h"
#include "Views/XDesktop.h"

#include <cmath>
#include <csignal>
#include <cstring>
#include <gtest/gtest.h>

namespace kippo {

using namespace std::chrono_literals;

/// A PulseAudio of its own, whose loudspeaker is written to a file.
struct DesktopSoundsTest : testing::Test {
    PrivateHome home;
    Child server;
    Child recorder;

    void SetUp() override {
        setenv("PULSE_SERVER", ("unix:" + home.path("socket")).c_str(), 1);
        setenv("CANBERRA_DRIVER", "pulse", 1);
        setenv("HOME", home.path().c_str(), 1);
        setenv("XDG_RUNTIME_DIR", home.path().c_str(), 1);
    }

    void startServer() {
        server = Child({"pulseaudio", "-n", "--daemonize=no", "--use-pid-file=no", "--exit-idle-time=-1", "-L",
                        "module-null-sink sink_name=speaker", "-L",
                        "module-native-protocol-unix auth-anonymous=1 socket=" + home.path("socket")},
                       {});
        ASSERT_TRUE(eventually([this] { return home.exists("socket"); }));
        std::filesystem::remove(home.path("heard"));
        recorder = Child({"parec", "--raw", "--format=s16le", "--channels=1", "--rate=48000", "--latency-msec=20",
                          "--device=speaker.monitor", home.path("heard")},
                         {});
        ASSERT_TRUE(eventually([this] { return !home.read("heard").empty(); }));
    }

    /// The loudest sample so far, from 0 to 1.
    double heard() const {
        const std::string bytes = home.read("heard");
        double loudest = 0;
        for (std::size_t i = 0; i + 1 < bytes.size(); i += 2) {
            std::int16_t sample = 0;
            std::memcpy(&sample, bytes.data() + i, sizeof sample);
            loudest = std::max(loudest, std::abs(sample / 32768.0));
        }
        return loudest;
    }
};

TEST_F(DesktopSoundsTest, IsHeardAlsoAfterTheServerWasRestarted) {
    startServer();
    DesktopSounds sounds;
    sounds.play(Sound::hero);
    EXPECT_TRUE(eventually([this] { return heard() > 0.3; })) << heard();
    recorder.end();
    server.end();
    std::filesystem::remove(home.path("socket"));
    startServer();
    sounds.play(Sound::hero); // a long one: a busy machine may lose the first moments
    EXPECT_TRUE(eventually([this] { return heard() > 0.3; })) << heard();
}

TEST_F(DesktopSoundsTest, NobodyWaitsForAServerThatIsMissingOrHangs) {
    const auto playAndQuit = [] {
        const auto start = std::chrono::steady_clock::now();
        {
            DesktopSounds sounds;
            for (int i = 0; i < 100; ++i) {
                sounds.play(Sound::glass);
            }
        }
        return std::chrono::steady_clock::now() - start;
    };
    EXPECT_LT(playAndQuit(), 2s);
    startServer();
    kill(server.pid(), SIGSTOP);
    EXPECT_LT(playAndQuit(), 2s);
    kill(server.pid(), SIGCONT);
}

} // namespace kippo
