// desktop_server COMMAND [ARGUMENT...]: runs the command and works on this display for it; exits
// with its status.
#include <netinet/in.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdio>
#include <cstdlib>
#include <functional>
#include <map>
#include <string>
#include <thread>
#include <utility>

#include "tests/support/desktop_calls.h"

namespace support {
namespace {

using Json = nlohmann::json;
using Call = std::function<Json(X11Desktop&, const Json&)>;

// The first element of what was sent is the method's name.
template <class Result, class... Arguments>
Call Calling(Result (X11Desktop::*method)(Arguments...)) {
  return [method](X11Desktop& desktop, const Json& sent) {
    return [&]<std::size_t... kIndex>(std::index_sequence<kIndex...>)->Json {
      const auto call = [&] {
        return (desktop.*method)(sent.at(kIndex + 1).get<std::decay_t<Arguments>>()...);
      };
      if constexpr (!std::is_void_v<Result>) return call();
      call();
      return nullptr;
    }
    (std::index_sequence_for<Arguments...>{});
  };
}

const std::map<std::string, Call>& Calls() {
  static const std::map<std::string, Call> calls = {
      {"Dpi", Calling(&X11Desktop::Dpi)},
      {"FindWindow", Calling(&X11Desktop::FindWindow)},
      {"StackedTitles", Calling(&X11Desktop::StackedTitles)},
      {"ActiveTitle", Calling(&X11Desktop::ActiveTitle)},
      {"RequestClose", Calling(&X11Desktop::RequestClose)},
      {"MovePointer", Calling(&X11Desktop::MovePointer)},
      {"PressButton", Calling(&X11Desktop::PressButton)},
      {"ReleaseButton", Calling(&X11Desktop::ReleaseButton)},
      {"Click", Calling(&X11Desktop::Click)},
      {"PressKey", Calling(&X11Desktop::PressKey)},
      {"Type", Calling(&X11Desktop::Type)},
      {"Pixels", Calling(&X11Desktop::Pixels)},
  };
  return calls;
}

void Serve(int connection) {
  X11Desktop desktop;
  FILE* const stream = fdopen(connection, "r+");
  char* line = nullptr;
  std::size_t capacity = 0;
  while (getline(&line, &capacity, stream) > 0) {
    const Json sent = Json::parse(line);
    const Json result = Calls().at(sent.at(0))(desktop, sent);
    std::fprintf(stream, "%s\n", result.dump().c_str());
    std::fflush(stream);
  }
  std::free(line);
  std::fclose(stream);
}

// Any free port of this machine alone.
int Listen() {
  const int listener = socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
  sockaddr_in address{};
  address.sin_family = AF_INET;
  address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
  socklen_t size = sizeof(address);
  auto* const name = reinterpret_cast<sockaddr*>(&address);
  if (bind(listener, name, size) != 0 || listen(listener, 8) != 0 ||
      getsockname(listener, name, &size) != 0) {
    std::perror("desktop_server");
    std::exit(1);
  }
  setenv(kDesktopPort, std::to_string(ntohs(address.sin_port)).c_str(), 1);
  return listener;
}

int RunCommand(char** command) {
  const pid_t child = fork();
  if (child == 0) {
    execvp(command[0], command);
    _exit(127);
  }
  int status = 0;
  waitpid(child, &status, 0);
  return WIFEXITED(status) ? WEXITSTATUS(status) : 128 + WTERMSIG(status);
}

}  // namespace
}  // namespace support

int main(int argc, char** argv) {
  if (argc < 2) return 2;
  const int listener = support::Listen();
  std::thread([listener] {
    for (int connection = 0;
         (connection = accept4(listener, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;) {
      std::thread(support::Serve, connection).detach();
    }
  }).detach();
  std::_Exit(support::RunCommand(argv + 1));
}
