// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>
#include <string>

#include <orvlang/platform/kit/KIT_WorkBuffer.h>
#include <orvlang/platform/net/VIO_ConnectedSocketListener.h>

class CMD_Manager;
class CMD_RequestFramer;
struct CMD_HttpHead;
struct XML_Document;

/// One client of a command port. Each delivery is classified by itself: the byte that closes the connection, an HTTP
/// request, an XML document, or text of the language. It runs at once, and its reply, followed by one NUL, is sent on
/// the same connection.
///
/// The object owns itself: it is destroyed when the connection ends. After the end of the manager, the next delivery
/// ends the connection and does not run.
class CMD_API CMD_ConnectedSocketCommandListener : public VIO_ConnectedSocketListener {
public:
    /// Accepts the connection that waits at `socket`. The settings are final: requests run on `manager`, in safe and in
    /// browser mode according to the arguments; with `separateErrors` a reply has errors after the other output.
    CMD_ConnectedSocketCommandListener(KIT_NetSocket &socket, CMD_Manager &manager, bool separateErrors,
                                       bool restrictToSafeCommands, const char *listenerOption,
                                       bool browserMode);
    ~CMD_ConnectedSocketCommandListener() override;

    const char *className() const override;

    /// Handles one delivery to `listener`, a CMD_ConnectedSocketCommandListener; the reply goes to `socket`.
    static void processSocketDataCallback(void *listener, const char *data, int length, KIT_NetSocket &socket);

protected:
    VIO_RequestExtent findRequest(const VIO_ReceivedBytes &received) override;

private:
    void processSocketData(std::string &request, KIT_NetSocket &socket);
    void processHTTPRequest(std::string &request, const CMD_HttpHead &head, KIT_NetSocket &socket,
                            KIT_WorkBuffer &reply);
    void runText(const char *text, KIT_WorkBuffer &reply);
    void processXML(const char *text, KIT_WorkBuffer &reply);
    void processXMLNode(const XML_Document &document, KIT_WorkBuffer &reply);
    void runOrvlangCommand(const char *text, KIT_WorkBuffer &reply);
    void runPythonExpression(const char *code, KIT_WorkBuffer &reply);
    void runPythonStatements(const char *code, KIT_WorkBuffer &reply);

    CMD_Manager &manager;   // valid only while managerLife has not expired
    const std::weak_ptr<const void> managerLife;
    const bool separateErrors;
    const bool restrictToSafeCommands;
    const bool browserMode;
    const std::unique_ptr<CMD_RequestFramer> framer;
};
