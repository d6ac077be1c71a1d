// SPDX-License-Identifier: Apache-2.0
#include <orvlang/platform/osl/OSL_SocketTable.h>

#include <cstdio>
#include <cstring>
#include <string>

#include <linux/inet_diag.h>
#include <linux/netlink.h>
#include <linux/sock_diag.h>
#include <netinet/in.h>
#include <unistd.h>

#include <orvlang/platform/osl/OSL_File.h>

namespace {

/// One end of a connection.
struct Endpoint {
    in6_addr address;   // an IPv4 one is mapped
    in_port_t port;     // in the order of the network

    explicit Endpoint(const sockaddr_storage &from) {
        if (from.ss_family == AF_INET6) {
            const auto &ip = reinterpret_cast<const sockaddr_in6 &>(from);
            address = ip.sin6_addr;
            port = ip.sin6_port;
            return;
        }
        const auto &ip = reinterpret_cast<const sockaddr_in &>(from);
        address = {};
        address.s6_addr[10] = address.s6_addr[11] = 0xff;
        std::memcpy(&address.s6_addr[12], &ip.sin_addr, sizeof ip.sin_addr);
        port = ip.sin_port;
    }
    bool isIp4() const { return IN6_IS_ADDR_V4MAPPED(&address); }
};

/// A question to the kernel's socket diagnosis and its answer.
struct Question {
    nlmsghdr header;
    inet_diag_req_v2 request;
};
struct Answer {
    nlmsghdr header;
    union {
        inet_diag_msg found;
        nlmsgerr error;
    };
    char attributes[1024];
};

void fill(__be32 (&words)[4], const Endpoint &end) {
    const size_t skipped = end.isIp4() ? 12 : 0;
    std::memcpy(words, &end.address.s6_addr[skipped], sizeof end.address.s6_addr - skipped);
}

Question makeQuestion(const Endpoint &own, const Endpoint &peer) {
    Question question = {};
    question.header.nlmsg_len = sizeof question;
    question.header.nlmsg_type = SOCK_DIAG_BY_FAMILY;
    question.header.nlmsg_flags = NLM_F_REQUEST;
    question.request.sdiag_family = own.isIp4() ? AF_INET : AF_INET6;
    question.request.sdiag_protocol = IPPROTO_TCP;
    question.request.idiag_states = ~0U;
    question.request.id.idiag_sport = own.port;
    question.request.id.idiag_dport = peer.port;
    fill(question.request.id.idiag_src, own);
    fill(question.request.id.idiag_dst, peer);
    question.request.id.idiag_cookie[0] = question.request.id.idiag_cookie[1] = INET_DIAG_NOCOOKIE;
    return question;
}

/// False when the kernel does not answer.
bool ask(const Question &question, Answer &answer) {
    const int descriptor = ::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC, NETLINK_SOCK_DIAG);
    if (descriptor < 0)
        return false;
    const bool answered =
        ::send(descriptor, &question, sizeof question, 0) == sizeof question &&
        ::recv(descriptor, &answer, sizeof answer, 0) >= static_cast<ssize_t>(sizeof answer.header);
    ::close(descriptor);
    return answered;
}

/// As the table of sockets writes it: each word of the address as a number of this machine.
std::string format(const Endpoint &end, bool asIp4) {
    char text[16];
    std::string all;
    for (size_t at = asIp4 ? 12 : 0; at < sizeof end.address.s6_addr; at += 4) {
        unsigned word;
        std::memcpy(&word, &end.address.s6_addr[at], sizeof word);
        std::snprintf(text, sizeof text, "%08X", word);
        all += text;
    }
    std::snprintf(text, sizeof text, ":%04X", static_cast<unsigned>(ntohs(end.port)));
    return all + text;
}

std::optional<OSL_SocketOwner> searchTable(const char *path, const Endpoint &own, const Endpoint &peer,
                                           bool asIp4) {
    std::string table;
    OSLreadFile(path, table);
    const std::string key = ' ' + format(own, asIp4) + ' ' + format(peer, asIp4) + ' ';
    const size_t found = table.find(key);
    OSL_SocketOwner owner;
    // State, queues, timer and retransmissions are in between.
    if (found == table.npos || std::sscanf(table.c_str() + found + key.size(), "%*s %*s %*s %*s %u %*s %lu",
                                           &owner.user, &owner.inode) != 2)
        return std::nullopt;
    return owner;
}

}   // namespace

std::optional<OSL_SocketOwner> OSLsearchSocketOwner(const sockaddr_storage &ownAddress,
                                                    const sockaddr_storage &peerAddress) {
    const Endpoint own(ownAddress), peer(peerAddress);
    std::optional<OSL_SocketOwner> owner;
    if (own.isIp4())
        owner = searchTable("/proc/net/tcp", own, peer, true);
    // An IPv6 socket may talk IPv4.
    return owner ? owner : searchTable("/proc/net/tcp6", own, peer, false);
}

std::optional<OSL_SocketOwner> OSLfindSocketOwner(const sockaddr_storage &own, const sockaddr_storage &peer) {
    // "No such entry" is also what a kernel says that has no such service, until it once found something.
    static bool isServed = false;
    const Question question = makeQuestion(Endpoint(own), Endpoint(peer));
    Answer answer = {};
    if (!ask(question, answer))
        return OSLsearchSocketOwner(own, peer);
    if (answer.header.nlmsg_type != SOCK_DIAG_BY_FAMILY)
        return isServed ? std::nullopt : OSLsearchSocketOwner(own, peer);
    isServed = true;
    // A socket that listens at the address is found when the connected one is gone.
    if (answer.found.id.idiag_dport != question.request.id.idiag_dport)
        return std::nullopt;
    return OSL_SocketOwner{ answer.found.idiag_uid, answer.found.idiag_inode };
}
