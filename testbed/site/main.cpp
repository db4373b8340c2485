// zab_site: an HTTP site on 127.0.0.1 whose every answer is known beforehand.
//
//   zab_site [LIST]
//
// Serves until it is ended; the first line of output is the port. The file LIST then holds what a browser asks
// of it, and what must come of that.

#include <httplib.h>

#include <fstream>
#include <iostream>

#include "resources.h"

namespace {

using namespace zab::site;

void answer(const httplib::Request& request, httplib::Response& response) {
    const Resource* resource = findResource(request.target);
    if (!resource) {
        response.status = 404;
        return;
    }
    Reply reply =
        replyTo(*resource, {[&](const char* name) { return request.get_header_value(name); }, request.body});

    // The library itself turns 200 into 206 for a request with a range.
    if (reply.status != 200) response.status = reply.status;
    if (reply.status == 401) response.set_header("WWW-Authenticate", "Basic realm=\"The test site\"");
    if (!resource->location.empty()) response.set_header("Location", std::string(resource->location));
    if (!resource->disposition.empty())
        response.set_header("Content-Disposition", std::string(resource->disposition));
    if (resource->target == kSessionPage)
        response.set_header("Set-Cookie", std::string(kSessionCookie) + "; Path=/; HttpOnly");
    if (resource->gzip && request.get_header_value("Accept-Encoding").find("gzip") != std::string::npos) {
        response.set_header("Content-Encoding", "gzip");
        reply.body = gzipOf(reply.body);
    }
    if (reply.body.empty()) return;
    // A provider, because the library compresses plain bodies as it sees fit, and this site promises its bytes.
    const auto body = std::make_shared<const std::string>(std::move(reply.body));
    response.set_content_provider(body->size(), std::string(resource->type),
                                  [body](std::size_t offset, std::size_t length, httplib::DataSink& sink) {
                                      return sink.write(body->data() + offset, length);
                                  });
}

}  // namespace

int main(int argc, char** argv) try {
    httplib::Server server;
    server.Get(".*", answer);
    server.Post(".*", answer);
    const int port = server.bind_to_any_port("127.0.0.1");
    if (port < 0) throw std::runtime_error("no port can be had");
    if (argc > 1) std::ofstream(argv[1]) << exchangeList(port).dump(1);
    std::cout << port << std::endl;
    return server.listen_after_bind() ? 0 : 2;
} catch (const std::exception& error) {
    std::fprintf(stderr, "zab_site: %s\n", error.what());
    return 2;
}
