#include "Platform/Linux/DesktopSounds.h"

#include "Platform/Posix/Descriptor.h"
#include "Sound/SoundSynthesis.h"

#include <canberra.h>
#include <chrono>
#include <condition_variable>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <string>
#include <sys/mman.h>
#include <thread>

namespace kippo {

namespace {

using namespace std::chrono_literals;
using Clock = std::chrono::steady_clock;

constexpr auto stale = 1s;
/// How long the end of the application waits for the sound server.
constexpr auto patience = 300ms;
/// More sounds at once are noise, and a server that hangs must not fill the memory.
constexpr std::size_t mostWaiting = 4;

struct Destroy {
    void operator()(ca_context* context) const { ca_context_destroy(context); }
};
using Context = std::unique_ptr<ca_context, Destroy>;

/// A connection to the sound server; null when there is none.
Context connectToServer() {
    ca_context* made = nullptr;
    if (ca_context_create(&made) != CA_SUCCESS) {
        return nullptr;
    }
    Context context{made};
    ca_context_change_props(context.get(), CA_PROP_APPLICATION_NAME, "Kippo", CA_PROP_MEDIA_ROLE, "event", nullptr);
    return ca_context_open(context.get()) == CA_SUCCESS ? std::move(context) : nullptr;
}

/// The sound as a file that is only in memory.
Descriptor memoryFile(Sound sound) {
    Descriptor file{memfd_create("kippo-sound", MFD_CLOEXEC)};
    const std::string bytes = SoundSynthesis::waveFile(SoundSynthesis::render(sound));
    for (std::size_t written = 0; file && written < bytes.size();) {
        const ssize_t count = write(file.get(), bytes.data() + written, bytes.size() - written);
        if (count <= 0) {
            return {};
        }
        written += static_cast<std::size_t>(count);
    }
    return file;
}

} // namespace

/// What the thread works with. The connection and the files are the thread's alone.
class DesktopSounds::Player {
public:
    void add(Sound sound) {
        {
            const std::lock_guard lock{mutex_};
            if (waiting_.size() >= mostWaiting) {
                return;
            }
            waiting_.push_back({sound, Clock::now()});
        }
        changed_.notify_all();
    }

    /// Asks the thread to end, and waits a moment for it.
    void end() {
        std::unique_lock lock{mutex_};
        ending_ = true;
        changed_.notify_all();
        changed_.wait_for(lock, patience, [this] { return ended_; });
    }

    /// The thread.
    void serve() {
        while (const auto sound = next()) {
            play(*sound);
        }
        context_.reset();
        const std::lock_guard lock{mutex_};
        ended_ = true;
        changed_.notify_all();
    }

private:
    struct Request {
        Sound sound{};
        Clock::time_point asked;
    };

    /// Waits for the next sound that is worth playing; nothing at the end.
    std::optional<Sound> next() {
        std::unique_lock lock{mutex_};
        for (;;) {
            changed_.wait(lock, [this] { return ending_ || !waiting_.empty(); });
            if (ending_) {
                return std::nullopt;
            }
            const Request request = waiting_.front();
            waiting_.pop_front();
            if (Clock::now() - request.asked < stale) {
                return request.sound;
            }
        }
    }

    void play(Sound sound) {
        auto file = files_.find(sound);
        if (file == files_.end()) {
            file = files_.emplace(sound, memoryFile(sound)).first;
        }
        const std::string path = "/proc/self/fd/" + std::to_string(file->second.get());
        // A connection from before may be one to a server that is gone.
        const bool isNew = !context_;
        if (!begin(sound, path) && !isNew) {
            begin(sound, path);
        }
    }

    bool begin(Sound sound, const std::string& path) {
        if (!context_) {
            context_ = connectToServer();
        }
        const std::string title{name(sound)};
        if (context_ && ca_context_play(context_.get(), 0, CA_PROP_MEDIA_FILENAME, path.c_str(), CA_PROP_MEDIA_NAME,
                                        title.c_str(), nullptr) == CA_SUCCESS) {
            return true;
        }
        context_.reset();
        return false;
    }

    std::mutex mutex_;
    std::condition_variable changed_;
    std::deque<Request> waiting_; ///< guarded by `mutex_`, as are the next two
    bool ending_ = false;
    bool ended_ = false;
    Context context_;
    std::map<Sound, Descriptor> files_;
};

DesktopSounds::DesktopSounds() : player_(std::make_shared<Player>()) {
    std::thread([player = player_] { player->serve(); }).detach();
}

DesktopSounds::~DesktopSounds() { player_->end(); }

void DesktopSounds::play(Sound sound) { player_->add(sound); }

} // namespace kippo
