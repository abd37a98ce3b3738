#include "tests/support/sound_server.h"

namespace velmora::blackbox {

SoundServer::SoundServer(const std::vector<std::string>& environment,
                         ChildProcess::Clock::time_point deadline)
    : server_(
          {"pulseaudio", "-n", "--daemonize=no", "--exit-idle-time=-1", "--use-pid-file=no", "--disable-shm",
           "-L", "module-native-protocol-unix", "-L", "module-null-sink sink_name=room norewinds=1"},
          environment) {
    while (ChildProcess({"pactl", "set-default-source", "room.monitor"}, environment).waitForEnd(deadline) !=
           0)
        server_.letRun(std::chrono::milliseconds(50));
    // Somebody who listens all the time keeps the sink from gathering two seconds of sound.
    listener_.emplace(std::vector<std::string>{"sh", "-c", "exec parec --raw --latency-msec=20 >/dev/null"},
                      environment);
}

}  // namespace velmora::blackbox
