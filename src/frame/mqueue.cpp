#include "frame/mqueue.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/ipc.h>
#include <sys/msg.h>
#include <sys/socket.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdint>
#include <cstdio>
#include <utility>
#include <vector>

#include "frame/mess.h"
#include "frame/resrc.h"
#include "frame/status.h"
#include "frame/string.h"
#include "frame/system.h"
#include "frame/tools.h"

namespace zav {
namespace {

constexpr std::size_t MESSAGE_SIZE = 120;  // one flag byte and the text
constexpr long TO_WINDOW = 1;
/// Connection on which a window answers a program that has none yet.
constexpr int FIRST_CONNECTION = 2;
constexpr int CONNECTED = 2;
/// Tries for a message at a tenth of a second; later ones come once a second.
constexpr int FAST_TRIES = 200;

enum : int { TYPE_QUEUE = 0, TYPE_SOCKET = 1 };

/// A message as the system's queue takes it.
struct Message {
    long type = 0;
    std::array<char, MESSAGE_SIZE> text{};
};

struct State {
    int type = TYPE_QUEUE;
    int offset = 0;
    int timeout = 20;
    void (*to_func)() = nullptr;
    int sock1 = -1;
};
State state;

/// Set by the alarm, which does nothing else but interrupt the waiting call.
volatile std::sig_atomic_t timed_out = 0;

void note_alarm(int) { timed_out = 1; }

void MQ_intrp() {
    MESS_print(MESS_WARN, "Queue not responding!!\n");
    ZAV_exit(STATUS_NO_ANSWER);
}

int open_queue(int num) {
    const key_t key = num + state.offset;
    // Under this key the system would make a new queue, which no window answers.
    if (key == IPC_PRIVATE) return -1;
    const int id = msgget(key, 0);
    if (id >= 0) return id;
    return errno == ENOENT ? -1 : 0;
}

int open_socket(int num) {
    sockaddr_in address{};
    const int port = num + state.offset;
    if (port < 1 || port > 0xFFFF) return -1;
    address.sin_family = AF_INET;
    address.sin_port = htons(static_cast<std::uint16_t>(port));
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    if (state.sock1 >= 0) close(state.sock1);
    state.sock1 = socket(AF_INET, SOCK_STREAM, 0);
    if (state.sock1 < 0) return -1;
    if (connect(state.sock1, reinterpret_cast<const sockaddr*>(&address), sizeof address) == 0) return 1;
    close(state.sock1);
    state.sock1 = -1;
    return -1;
}

bool read_socket(char* data, std::size_t size) {
    while (size > 0) {
        const ssize_t got = recv(state.sock1, data, size, 0);
        if (got <= 0) return false;
        data += got;
        size -= static_cast<std::size_t>(got);
    }
    return true;
}

bool write_socket(const std::string& text) {
    std::string packet(1, static_cast<char>(text.size()));
    packet += text;
    return send(state.sock1, packet.data(), packet.size(), MSG_NOSIGNAL) == static_cast<ssize_t>(packet.size());
}

/// The next message of the socket, flag in front. False on a failure.
bool receive_socket(std::string& text) {
    char length = 0;
    if (!read_socket(&length, 1)) return false;
    text.assign(static_cast<unsigned char>(length), '\0');
    return read_socket(text.data(), text.size());
}

/// The next message of the queue for a connection, flag in front. False on a failure.
bool receive_queue(int msgqid, int conn_id, std::string& text) {
    Message message;
    for (int tries = 1;; ++tries) {
        const ssize_t got = msgrcv(msgqid, &message, message.text.size(), conn_id, IPC_NOWAIT | MSG_NOERROR);
        if (got >= 0) {
            text.assign(message.text.data(), static_cast<std::size_t>(got));
            return true;
        }
        if (errno != ENOMSG || timed_out != 0) return false;
        if (tries >= 2) usleep(tries > FAST_TRIES ? 1000000 : 100000);
    }
}

}  // namespace

int MQ_open(int num) { return state.type == TYPE_SOCKET ? open_socket(num) : open_queue(num); }

int MQ_connect(int msgqid) {
    MQ_clear(msgqid, FIRST_CONNECTION);
    MQ_put(msgqid, -1, "%d", static_cast<int>(getuid()));
    std::string reply;
    if (MQ_get(msgqid, FIRST_CONNECTION, reply) != CONNECTED) return -1;
    const int connection = text_to_int(reply);
    if (connection < 1) return -1;
    MQ_clear(msgqid, connection);
    return connection;
}

void MQ_put(int msgqid, int conn_id, const char* format, ...) {
    std::array<char, MESSAGE_SIZE> text;  // the flag byte stands in place of the zero byte
    std::va_list args;
    va_start(args, format);
    std::vsnprintf(text.data(), text.size(), format, args);
    va_end(args);
    const std::string packet = std::string(1, static_cast<char>(conn_id + '0')) + text.data();

    MQ_enable_alarm();
    if (state.type == TYPE_SOCKET) {
        write_socket(packet);
    } else {
        Message message;
        message.type = TO_WINDOW;
        packet.copy(message.text.data(), packet.size());
        // The text goes out with its zero byte where there is room for it.
        msgsnd(msgqid, &message, std::min(packet.size() + 1, message.text.size()), 0);
    }
    MQ_disable_alarm();
}

int MQ_get(int msgqid, int conn_id, std::string& item) {
    item.clear();
    std::string text;
    MQ_enable_alarm();
    const bool received = state.type == TYPE_SOCKET ? receive_socket(text) : receive_queue(msgqid, conn_id, text);
    MQ_disable_alarm();
    if (!received || text.empty()) return -1;
    item = text.c_str() + 1;
    return text[0] - '0';
}

void MQ_clear(int msgqid, int index) {
    if (state.type == TYPE_SOCKET) return;
    Message message;
    while (msgrcv(msgqid, &message, message.text.size(), index, IPC_NOWAIT | MSG_NOERROR) >= 0) {
    }
}

int MQ_timeout(int val) { return std::exchange(state.timeout, val); }

void MQ_timeout_func(void (*func)()) { state.to_func = func; }

void MQ_offset(int ind) { state.offset = ind; }

void MQ_settype(int ind) { state.type = ind; }

void MQ_enable_alarm() {
    timed_out = 0;
    struct sigaction action {};
    action.sa_handler = note_alarm;
    sigemptyset(&action.sa_mask);
    // Without a restart of the call that waits.
    sigaction(SIGALRM, &action, nullptr);
    alarm(static_cast<unsigned>(std::max(state.timeout, 1)));
}

void MQ_disable_alarm() {
    alarm(0);
    if (timed_out == 0) return;
    timed_out = 0;
    (state.to_func != nullptr ? state.to_func : MQ_intrp)();
}

void MQ_params() {
    std::vector<std::string> words;
    RES_getvals("parameter", words);
    for (const std::string& word : words) {
        if (strnicmp(word.c_str(), "to", 2) == 0) MQ_timeout(text_to_int(word.size() > 3 ? word.substr(3) : "0"));
        if (stricmp(word.c_str(), "qtype=sock") == 0) MQ_settype(TYPE_SOCKET);
        if (stricmp(word.c_str(), "qtype=mqueue") == 0) MQ_settype(TYPE_QUEUE);
    }
}

}  // namespace zav
