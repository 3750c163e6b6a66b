#pragma once

#include <string>

namespace zav {

/// Opens the queue of loop window `num`. Queue mode: its id; -1 if no such queue exists, 0 for any other failure.
/// Socket mode: 1 when connected to the window's port on this host, else -1.
int MQ_open(int num);
/// Asks for a connection: its number, or -1.
int MQ_connect(int msgqid);
/// Sends a text made as by printf, cut to what a message holds, to the window or, by `conn_id`, to a connection.
void MQ_put(int msgqid, int conn_id, const char* format, ...) __attribute__((format(printf, 3, 4)));
/// Receives a text: the flag of its message, 0 for a line with more to come; -1 on a failure of the queue.
int MQ_get(int msgqid, int conn_id, std::string& item);
/// Reads away what waits for a connection.
void MQ_clear(int msgqid, int index);

/// Sets the seconds that an operation on a queue may take, 20 at start. The former number.
int MQ_timeout(int val);
/// What a time-out calls; null for the end of the program with status 7.
void MQ_timeout_func(void (*func)());
/// Number added to that of a window to give its key or port.
void MQ_offset(int ind);
/// 0 for a message queue, 1 for a socket.
void MQ_settype(int ind);
/// Starts and ends the wait for a queue.
void MQ_enable_alarm();
void MQ_disable_alarm();
/// Takes the words of the resource "parameter": to=seconds, qtype=sock, qtype=mqueue.
void MQ_params();

}  // namespace zav
