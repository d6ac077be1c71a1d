// SPDX-License-Identifier: Apache-2.0
#pragma once

#include <memory>

#include <orvlang/platform/kit/KIT_WorkBuffer.h>
#include <orvlang/platform/vio/VIO_ConnectedSocketListener.h>

class CMD_Manager;
struct XML_Document;

/// One client of a command port. Each delivery is judged by itself: the byte that closes the connection, an HTTP
/// request, an XML document, or text of the language. It is run at once, and its reply, with one NUL behind it, goes back
/// on the same connection.
///
/// The object belongs to itself: it goes when the connection ends. When the manager has gone before, the next delivery
/// ends the connection instead of being run.
class CMD_API CMD_ConnectedSocketCommandListener : public VIO_ConnectedSocketListener {
public:
    /// Takes the connection that waits at `socket`. The settings stay as they are given here: what arrives runs on
    /// `manager`, in safe and in browser mode if so told; `separateErrors` keeps errors apart from other output.
    CMD_ConnectedSocketCommandListener(KIT_NetSocket &socket, CMD_Manager &manager, bool separateErrors,
                                       bool restrictToSafeCommands, const char *listenerOption,
                                       bool browserMode);

    const char *className() const override;

    /// Handles one delivery to `listener`, a CMD_ConnectedSocketCommandListener; the reply goes to `socket`.
    static void processSocketDataCallback(void *listener, const char *data, int length, KIT_NetSocket &socket);

private:
    void processSocketData(const KIT_WorkBuffer &request, KIT_NetSocket &socket);
    void processHTTPRequest(const KIT_WorkBuffer &request, KIT_NetSocket &socket, KIT_WorkBuffer &reply);
    void runText(const char *text, KIT_WorkBuffer &reply);
    void processXML(const char *text, KIT_WorkBuffer &reply);
    void processXMLNode(const XML_Document &document, KIT_WorkBuffer &reply);
    void runOrvlangCommand(const char *text, KIT_WorkBuffer &reply);
    void runPythonExpression(const char *code, KIT_WorkBuffer &reply);
    void runPythonStatements(const char *code, KIT_WorkBuffer &reply);

    CMD_Manager &manager;   // only while managerLife has not expired
    const std::weak_ptr<const void> managerLife;
    const bool separateErrors;
    const bool restrictToSafeCommands;
    const bool browserMode;
};
