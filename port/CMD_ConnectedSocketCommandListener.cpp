// SPDX-License-Identifier: Apache-2.0
// The road of a request, steps 5, 7 and 8. `processSocketDataCallback` gets a request from the connection
// (VIO_Connection.cpp). `processSocketData` recognises its kind and runs it: XML and text here, an HTTP request by
// `processHTTPRequest` (CMD_ConnectedSocketCommandListener_http.cpp). `runOrvlangCommand` passes text of the language to
// `CMD_Manager::execute` (CMD_Manager_input.cpp). `sendReply` writes the reply to the socket.
#include <orvlang/port/CMD_ConnectedSocketCommandListener.h>

#include <algorithm>
#include <cstring>
#include <exception>
#include <optional>

#include <orvlang/engine/CMD_Manager.h>
#include <orvlang/engine/CMD_ModeScope.h>
#include <orvlang/platform/kit/KIT_OStrStream.h>
#include <orvlang/platform/kit/KIT_UndoManager.h>
#include <orvlang/platform/snk/SNK_Python.h>
#include <orvlang/platform/xml/XML_Document.h>
#include <orvlang/port/CMD_PortProtocol.h>
#include <orvlang/port/CMD_RequestFramer.h>
#include <orvlang/port/CMD_SeparateRun.h>

using namespace CMD_PortProtocol;

namespace {

/// What a request changes can be taken back as one step.
class UndoBlock {
public:
    UndoBlock() : id(KITbeginUndoBlock("Execute Command From Port", 1, nullptr)) {}
    ~UndoBlock() { KITendUndoBlock(id, nullptr); }
    UndoBlock(const UndoBlock &) = delete;
    UndoBlock &operator=(const UndoBlock &) = delete;

private:
    const int id;
};

void refuse(std::string_view reason, KIT_WorkBuffer &reply) {
    reply.strcpy("<?xml version=\"1.0\"?>\n<parse_error>");
    reply.strcat(reason);
    reply.strcat("</parse_error>\n");
}

/// Writes the text and the NUL after it. A failure concerns the client only and is not reported.
void sendReply(const KIT_WorkBuffer &reply, KIT_NetSocket &socket) {
    constexpr size_t theLargestPiece = 1 << 30;   // a length is an int
    const char *next = reply.c_str();
    size_t left = std::strlen(next) + 1;
    while (left > 0) {
        int written = 0;
        const int result = socket.write(next, static_cast<int>(std::min(left, theLargestPiece)), &written);
        if (result == KIT_NetSocket::TryAgain)
            continue;
        if (result != KIT_NetSocket::Ok || written <= 0)
            return;
        next += written;
        left -= static_cast<size_t>(written);
    }
}

}   // namespace

CMD_ConnectedSocketCommandListener::CMD_ConnectedSocketCommandListener(
    KIT_NetSocket &socket, CMD_Manager &manager, bool separateErrors, bool restrictToSafeCommands,
    const char *listenerOption, bool browserMode)
    : VIO_ConnectedSocketListener(socket, processSocketDataCallback, this, listenerOption), manager(manager),
      managerLife(manager.getLife()), separateErrors(separateErrors),
      restrictToSafeCommands(restrictToSafeCommands), browserMode(browserMode),
      framer(std::make_unique<CMD_RequestFramer>(VIO_ListenerOptions::parse(listenerOption, nullptr))) {
    if (isConnected())
        installGenerator();
}

CMD_ConnectedSocketCommandListener::~CMD_ConnectedSocketCommandListener() {
    if (isConnected())
        uninstallGenerator();
}

const char *CMD_ConnectedSocketCommandListener::className() const {
    return "CMD_ConnectedSocketCommandListener";
}

VIO_RequestExtent CMD_ConnectedSocketCommandListener::findRequest(const VIO_ReceivedBytes &received) {
    return framer->findRequest(received);
}

void CMD_ConnectedSocketCommandListener::processSocketDataCallback(void *listener, const char *data, int length,
                                                                   KIT_NetSocket &socket) {
    auto &connection = *static_cast<CMD_ConnectedSocketCommandListener *>(listener);
    if (connection.managerLife.expired())
        return socket.close();
    std::string request;
    request.reserve(static_cast<size_t>(length) + theLineEnd.size());
    request.append(data, static_cast<size_t>(length));
    connection.processSocketData(request, socket);
}

void CMD_ConnectedSocketCommandListener::processSocketData(std::string &request, KIT_NetSocket &socket) {
    const std::optional<CMD_HttpHead> head = framer->releaseHead();
    if (request == theCloseRequest)
        return socket.close();
    KIT_WorkBuffer reply;
    if (head && framer->lacksLineEnd())
        request += theLineEnd;
    if (request.starts_with(thePostLine))
        processHTTPRequest(request, head ? *head : framer->parseHead(request), socket, reply);
    else
        runText(request.c_str(), reply);
    sendReply(reply, socket);
}

void CMD_ConnectedSocketCommandListener::runText(const char *text, KIT_WorkBuffer &reply) {
    if (std::string_view(text).starts_with(theXmlStart))
        processXML(text, reply);
    else
        runOrvlangCommand(text, reply);
}

void CMD_ConnectedSocketCommandListener::processXML(const char *text, KIT_WorkBuffer &reply) {
    try {
        const XML_Document document = XMLparse(text);
        if (document.hasRoot && !document.isFailure)
            processXMLNode(document, reply);
        else
            refuse(document.failure, reply);
    } catch (const std::exception &exception) {
        refuse(exception.what(), reply);
    }
}

void CMD_ConnectedSocketCommandListener::processXMLNode(const XML_Document &document, KIT_WorkBuffer &reply) {
    using Run = void (CMD_ConnectedSocketCommandListener::*)(const char *text, KIT_WorkBuffer &reply);
    static constexpr struct {
        const char *rootName;
        Run run;
    } theKinds[] = {
        { "orvlang", &CMD_ConnectedSocketCommandListener::runOrvlangCommand },
        { "python_expression", &CMD_ConnectedSocketCommandListener::runPythonExpression },
        { "python_statements", &CMD_ConnectedSocketCommandListener::runPythonStatements },
    };
    const auto kind = std::find_if(std::begin(theKinds), std::end(theKinds),
                                   [&](const auto &each) { return document.rootName == each.rootName; });
    if (kind == std::end(theKinds))
        refuse("Unrecognized XML", reply);
    else if (document.content.empty())
        refuse("You cannot send an empty piece of code", reply);
    else
        (this->*kind->run)(document.content.c_str(), reply);
}

void CMD_ConnectedSocketCommandListener::runOrvlangCommand(const char *text, KIT_WorkBuffer &reply) {
    KIT_OStrStream output;
    std::optional<KIT_OStrStream> ownErrors;
    KIT_OStrStream &errors = separateErrors ? ownErrors.emplace() : output;
    {
        const CMD_ModeScope safe(manager, &CMD_Manager::setSafeMode, manager.isInSafeMode(),
                                 restrictToSafeCommands);
        const CMD_ModeScope browser(manager, &CMD_Manager::setBrowserMode, manager.isInBrowserMode(),
                                    browserMode);
        const UndoBlock block;
        const CMD_SeparateRun run;
        manager.execute(text, 0, &output, &errors, 1, false);
    }
    if (ownErrors && !ownErrors->view().empty())
        output << theErrorMarker << ownErrors->view();
    reply.strcpy(output.text());
}

void CMD_ConnectedSocketCommandListener::runPythonExpression(const char *code, KIT_WorkBuffer &reply) {
    const SNK_Result result = SNKrunPythonExpression(code, SNK_Result::String, nullptr);
    reply.strcpy((result.kind == SNK_Result::Exception ? result.detailText : result.stringValue).c_str());
}

void CMD_ConnectedSocketCommandListener::runPythonStatements(const char *code, KIT_WorkBuffer &reply) {
    const SNK_Result result = SNKrunPythonStatements(code, nullptr);
    if (result.kind == SNK_Result::Exception)
        reply.strcpy(result.detailText.c_str());
}
