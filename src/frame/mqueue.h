#pragma once

#include <string>

namespace zav {

/// Opens the queue of a loop window. Its id; -1 if no such queue exists, 0 for any other failure.
int MQ_open(int num);
/// Asks for a connection: its number, or -1.
int MQ_connect(int msgqid);
/// Sends a text made as by printf, cut to what a message holds.
void MQ_put(int msgqid, int conn_id, const char* format, ...) __attribute__((format(printf, 3, 4)));
/// Receives a text: the flag of its message, or -1 on a failure of the queue.
int MQ_get(int msgqid, int conn_id, std::string& item);

/// Ends the program through the time-out if `secs` pass before the next call; 0 ends the wait.
void MQ_alarm(int secs);
/// From now on a time-out has no effect.
void MQ_ignore_alarm();

}  // namespace zav
