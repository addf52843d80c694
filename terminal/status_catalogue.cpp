#include "terminal/status_catalogue.h"

#include <algorithm>

namespace {

constexpr std::string_view kLibrary = "VANTAPI32.DLL Error";
constexpr std::string_view kSharedData = "Vantor Shared Data Access Error";
constexpr std::string_view kNetwork = "Winsock Error";

struct Row {
  int code;
  std::string_view name;
  std::string_view title;
  std::string_view sentence;  ///< short, in front of the explanation; empty for none
  std::string_view explanation;
};

/// The network's explanations are those of its public reference, where each cross-reference has become the same words.
constexpr Row kRows[] = {
    {-4, "VANT_NO_HEAP_MEMORY", kLibrary, "", "VANTAPI32.DLL was unsuccessful in allocating heap memory."},
    {-2, "VANT_INVALID_PROCESS", kLibrary, "",
     "A process attempted a Vantor communication function without first registering with "
     "VANTAPI32.DLL."},
    {-1, "VANT_TOO_MANY_PROCESSES", kLibrary, "",
     "Only one process at a time may be registered with VANTAPI32.DLL.  There was a second register "
     "process call without an intervening close to the first process call."},
    {1, "VANT_BAD_CONNECT", kLibrary, "", "VANTAPI32.DLL was not able to communicate with the PC."},
    {2, "VANT_INVALID_FIELD", kLibrary, "", "There is an invalid field in the calling parameters to VANTAPI32.DLL."},
    {4, "VANT_INVALID_TERMINAL", kLibrary, "",
     "There is an invalid terminal number in the calling parameters to VANTAPI32.DLL."},
    {65, "VANT_INVALID_SD_FIELD_NAME", kSharedData, "",
     "The Vantor returned an error status indicating that the shared data field name in a read or "
     "write call was not a valid name."},
    {67, "VANT_INVALID_BUFFER_LENGTH", kSharedData, "",
     "The buffer length of the read or write operation was not valid."},
    {68, "VANT_SD_END_OF_FILE", kSharedData, "", "The read operation for shared data encountered an end file."},
    {69, "VANT_SD_WRITE_NOT_ALLOWED", kSharedData, "",
     "Writing to particular shared data fields is not allowed. This is particularly true when the "
     "Vantor 'legal for trade' jumper is on."},
    {10004, "WSAEINTR", kNetwork, "Interrupted function call. ",
     "A blocking operation was interrupted by a call to 'Error! Reference source not found.'"},
    {10013, "WSAEACCES", kNetwork, "Permission denied.",
     "An attempt was made to access a socket in a way forbidden by its access permissions. An example "
     "is using a broadcast address for 'Error! Reference source not found.' without broadcast "
     "permission being set using 'Error! Reference source not found.' (SO_BROADCAST)."},
    {10014, "WSAEFAULT", kNetwork, "Bad address. ",
     "The system detected an invalid pointer address in attempting to use a pointer argument of a "
     "call. This error occurs if an application passes an invalid pointer value, or if the length of "
     "the buffer is too small. For instance, if the length of an argument which is a struct sockaddr "
     "is smaller than sizeof(struct sockaddr)."},
    {10022, "WSAEINVAL", kNetwork, "",
     "Some invalid argument was supplied (for example, specifying an invalid level to the 'Error! "
     "Reference source not found.' function). In some instances, it also refers to the current state "
     "of the socket - for instance, calling 'Error! Reference source not found.' on a socket that is "
     "not listening. "},
    {10024, "WSAEMFILE", kNetwork, "Too many open files. ",
     "Too many open sockets. Each implementation may have a maximum number of socket handles "
     "available, either globally, per process or per thread."},
    {10035, "WSAEWOULDBLOCK", kNetwork, "Resource temporarily unavailable. ",
     "This error is returned from operations on non-blocking sockets that cannot be completed "
     "immediately, for example 'Error! Reference source not found.' when no data is queued to be read "
     "from the socket. It is a non-fatal error, and the operation should be retried later. It is "
     "normal for WSAEWOULDBLOCK to be reported as the result from calling 'Error! Reference source "
     "not found.' on a non-blocking SOCK_STREAM socket, since some time must elapse for the "
     "connection to be established."},
    {10036, "WSAEINPROGRESS", kNetwork, "Operation now in progress. ",
     "A blocking operation is currently executing. Windows Sockets only allows a single blocking "
     "operation to be outstanding per task (or thread), and if any other function call is made "
     "(whether or not it references that or any other socket) the function fails with the "
     "WSAEINPROGRESS error."},
    {10037, "WSAEALREADY", kNetwork, "Operation already in progress. ",
     "An operation was attempted on a non-blocking socket that already had an operation in progress - "
     "i.e. calling 'Error! Reference source not found.' a second time on a non-blocking socket that "
     "is already connecting, or canceling an asynchronous request ('Error! Reference source not "
     "found.') that has already been canceled or completed."},
    {10038, "WSAENOTSOCK", kNetwork, "Socket operation on non-socket. ",
     "An operation was attempted on something that is not a socket. Either the socket handle "
     "parameter did not reference a valid socket, or for 'Error! Reference source not found.', a "
     "member of an fd_set was not valid."},
    {10039, "WSAEDESTADDRREQ", kNetwork, "Destination address required. ",
     "A required address was omitted from an operation on a socket. For example, this error will be "
     "returned if 'Error! Reference source not found.' is called with the remote address of ADDR_ANY."},
    {10040, "WSAEMSGSIZE", kNetwork, "Message too long. ",
     "A message sent on a datagram socket was larger than the internal message buffer or some other "
     "network limit, or the buffer used to receive a datagram into was smaller than the datagram "
     "itself."},
    {10041, "WSAEPROTOTYPE", kNetwork, "Protocol wrong type for socket. ",
     "A protocol was specified in the 'Error! Reference source not found.' function call that does "
     "not support the semantics of the socket type requested. For example, the ARPA Internet UDP "
     "protocol cannot be specified with a socket type of SOCK_STREAM."},
    {10042, "WSAENOPROTOOPT", kNetwork, "Bad protocol option. ",
     "An unknown, invalid or unsupported option or level was specified in a 'Error! Reference source "
     "not found.' or 'Error! Reference source not found.' call."},
    {10043, "WSAEPROTONOSUPPORT", kNetwork, "Protocol not supported. ",
     "The requested protocol has not been configured into the system, or no implementation for it "
     "exists. For example, a 'Error! Reference source not found.' call requests a SOCK_DGRAM socket, "
     "but specifies a stream protocol."},
    {10044, "WSAESOCKTNOSUPPORT", kNetwork, "Socket type not supported. ",
     "The support for the specified socket type does not exist in this address family. For example, "
     "the optional type SOCK_RAW might be selected in a 'Error! Reference source not found.' call, "
     "and the implementation does not support SOCK_RAW sockets at all."},
    {10045, "WSAEOPNOTSUPP", kNetwork, "Operation not supported. ",
     "The attempted operation is not supported for the type of object referenced. Usually this occurs "
     "when a socket descriptor to a socket that cannot support this operation, for example, trying to "
     "accept a connection on a datagram socket."},
    {10046, "WSAEPFNOSUPPORT", kNetwork, "Protocol family not supported. ",
     "The protocol family has not been configured into the system or no implementation for it exists. "
     "Has a slightly different meaning to WSAEAFNOSUPPORT, but is interchangeable in most cases, and "
     "all Windows Sockets functions that return one of these specify WSAEAFNOSUPPORT."},
    {10047, "WSAEAFNOSUPPORT", kNetwork, "Address family not supported by protocol family. ",
     "An address incompatible with the requested protocol was used. All sockets are created with an "
     "associated \"address family\" (i.e. AF_INET for Internet Protocols) and a generic protocol type "
     "(i.e. SOCK_STREAM). This error will be returned if an incorrect protocol is explicitly "
     "requested in the 'Error! Reference source not found.' call, or if an address of the wrong "
     "family is used for a socket, e.g. in 'Error! Reference source not found.'"},
    {10048, "WSAEADDRINUSE", kNetwork, "Address already in use. ",
     "Only one usage of each socket address (protocol/IP address/port) is normally permitted. This "
     "error occurs if an application attempts to 'Error! Reference source not found.' a socket to an "
     "IP address/port that has already been used for an existing socket, or a socket that wasn't "
     "closed properly, or one that is still in the process of closing. For server applications that "
     "need to bind multiple sockets to the same port number, consider using 'Error! Reference source "
     "not found.' (SO_REUSEADDR). Client applications usually need not call bind at all - 'Error! "
     "Reference source not found.' will choose an unused port automatically."},
    {10049, "WSAEADDRNOTAVAIL", kNetwork, "Cannot assign requested address.",
     "The requested address is not valid in its context. Normally results from an attempt to 'Error! "
     "Reference source not found.' to an address that is not valid for the local machine, or 'Error! "
     "Reference source not found.' an address or port that is not valid for a remote machine (e.g. "
     "port 0)."},
    {10050, "WSAENETDOWN", kNetwork, "Network is down. ",
     "A socket operation encountered a dead network. This could indicate a serious failure of the "
     "network system (i.e. the protocol stack that the WinSock DLL runs over), the network interface, "
     "or the local network itself."},
    {10051, "WSAENETUNREACH", kNetwork, "Network is unreachable. ",
     "A socket operation was attempted to an unreachable network. This usually means the local "
     "software knows no route to reach the remote host."},
    {10052, "WSAENETRESET", kNetwork, "Network dropped connection on reset.",
     "The host you were connected to crashed and rebooted. May also be returned by 'Error! Reference "
     "source not found.' if an attempt is made to set SO_KEEPALIVE on a connection that has already "
     "failed."},
    {10053, "WSAECONNABORTED", kNetwork, "Software caused connection abort.",
     "An established connection was aborted by the software in your host machine, possibly due to a "
     "data transmission timeout or protocol error."},
    {10054, "WSAECONNRESET", kNetwork, "Connection reset by peer. ",
     "A existing connection was forcibly closed by the remote host. This normally results if the peer "
     "application on the remote host is suddenly stopped, the host is rebooted, or the remote host "
     "used a 'hard close'"},
    {10055, "WSAENOBUFS", kNetwork, "No buffer space available.",
     "An operation on a socket could not be performed because the system lacked sufficient buffer "
     "space or because a queue was full."},
    {10056, "WSAEISCONN", kNetwork, "Socket is already connected. ",
     "A connect request was made on an already connected socket. Some implementations also return "
     "this error if 'Error! Reference source not found.' is called on a connected SOCK_DGRAM socket "
     "(For SOCK_STREAM sockets, the to parameter in 'Error! Reference source not found.' is ignored), "
     "although other implementations treat this as a legal occurrence."},
    {10057, "WSAENOTCONN", kNetwork, "Socket is not connected. ",
     "A request to send or receive data was disallowed because the socket is not connected and (when "
     "sending on a datagram socket using} 'Error! Reference source not found.') no address was "
     "supplied. Any other type of operation might also return this error - for example, 'Error! "
     "Reference source not found.' setting SO_KEEPALIVE if the connection has been reset."},
    {10058, "WSAESHUTDOWN", kNetwork, "Cannot send after socket shutdown. ",
     "A request to send or receive data was disallowed because the socket had already been shut down "
     "in that direction with a previous 'Error! Reference source not found.' call. By calling "
     "shutdown a partial close of a socket is requested, which is a signal that sending or receiving "
     "or both has been discontinued."},
    {10060, "WSAETIMEDOUT", kNetwork, "Connection timed out. ",
     "A connection attempt failed because the connected party did not properly respond after a period "
     "of time, or established connection failed because connected host has failed to respond."},
    {10061, "WSAECONNREFUSED", kNetwork, "Connection refused. ",
     "No connection could be made because the target machine actively refused it. This usually "
     "results from trying to connect to a service that is inactive on the foreign host - i.e. one "
     "with no server application running."},
    {10064, "WSAEHOSTDOWN", kNetwork, "Host is down. ",
     "A socket operation failed because the destination host was down. A socket operation encountered "
     "a dead host. Networking activity on the local host has not been initiated. These conditions are "
     "more likely to be indicated by the error WSAETIMEDOUT."},
    {10065, "WSAEHOSTUNREACH", kNetwork, "No route to host. ",
     "A socket operation was attempted to an unreachable host. See WSAENETUNREACH"},
    {10067, "WSAEPROCLIM", kNetwork, "Too many processes. ",
     "A Windows Sockets implementation may have a limit on the number of applications that may use it "
     "simultaneously. 'Error! Reference source not found.' may fail with this error if the limit has "
     "been reached."},
    {10091, "WSASYSNOTREADY", kNetwork, "Network subsystem is unavailable. ",
     "This error is returned by 'Error! Reference source not found.' if the Windows Sockets "
     "implementation cannot function at this time because the underlying system it uses to provide "
     "network services is currently unavailable. Users should check that the appropriate Windows "
     "Sockets DLL file is in the current path, that they are not trying to use more than one Windows "
     "Sockets implementation simultaneously, and that all components of the implementation are "
     "correctly installed."},
    {10092, "WSAVERNOTSUPPORTED", kNetwork, "WINSOCK.DLL version out of range. ",
     "The current Windows Sockets implementation does not support the Windows Sockets version "
     "requested by the application. Check that no old Windows Sockets DLL files are being accessed."},
    {10093, "WSANOTINITIALISED", kNetwork, "Successful WSAStartup not yet performed. ",
     "Either the application hasn't called 'Error! Reference source not found.' or 'Error! Reference "
     "source not found.' failed. The application may be accessing a socket which the current active "
     "task does not own (i.e. trying to share a socket between tasks), or 'Error! Reference source "
     "not found.' has been called too many times."},
    {10094, "WSAEDISCON", kNetwork, "Graceful shutdown in progress. ",
     "Returned by 'Error! Reference source not found.', 'Error! Reference source not found.' to indicate "
     "the remote party has initiated a graceful shutdown sequence."},
    {11001, "WSAHOST_NOT_FOUND", kNetwork, "Host not found. ",
     "No such host is known. The name is not an official hostname or alias, or it cannot be found in "
     "the database(s) being queried. This error may also be returned for protocol and service "
     "queries, and means the specified name could not be found in the relevant database."},
    {11002, "WSATRY_AGAIN", kNetwork, "Non-authoritative host not found. ",
     "This is usually a temporary error during hostname resolution and means that the local server "
     "did not receive a response from an authoritative server. A retry at some time later may be} "
     "successful."},
    {11003, "WSANO_RECOVERY", kNetwork, "This is a non-recoverable error. ",
     "This indicates some sort of non-recoverable error occurred during a database lookup. This may "
     "be because the database files (e.g. BSD-compatible HOSTS, SERVICES or PROTOCOLS files) could "
     "not be found, or a DNS request was returned by the server with a severe error."},
    {11004, "WSANO_DATA", kNetwork, "Valid name, no data record of requested type. ",
     "The requested name is valid and was found in the database, but it does not have the correct "
     "associated data being resolved for. The usual example for this is a hostname -> address "
     "translation attempt (using 'Error! Reference source not found.' or 'Error! Reference source not "
     "found.') which uses the DNS (Domain Name Server), and an MX record is returned but no A record "
     "- indicating the host itself exists, but is not directly reachable."},
};

}  // namespace

StatusMeaning MeaningOf(int status) {
  const auto* const row =
      std::find_if(std::begin(kRows), std::end(kRows), [&](const Row& known) { return known.code == status; });
  if (row == std::end(kRows)) return {"?", "Unknown Error", "Unknown error occured"};
  std::string body(row->sentence);
  if (!body.empty()) body += "\r\n";
  return {row->name, row->title, body + std::string(row->explanation)};
}
