// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <string_view>

/// The fixed bytes of requests and replies on a command port.
namespace CMD_PortProtocol {

/// Asks for the end of the connection.
inline constexpr std::string_view theCloseRequest = "\x04";
inline constexpr std::string_view theXmlStart = "<?xml";
/// The first line of an HTTP request that the port runs.
inline constexpr std::string_view thePostLine = "POST / HTTP/1.1\r\n";
/// Ends the head of an HTTP request.
inline constexpr std::string_view theBlankLine = "\r\n\r\n";
/// Follows the body of an HTTP request, whose `Content-Length` does not include it.
inline constexpr std::string_view theLineEnd = "\r\n";
/// Comes before the errors in a reply that has them apart.
inline constexpr std::string_view theErrorMarker = "\n~~~~~\n";

}   // namespace CMD_PortProtocol
