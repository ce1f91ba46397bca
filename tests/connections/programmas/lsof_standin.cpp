// SPDX-License-Identifier: MIT
// Stands in for lsof. What it does is in its environment:
//   STANDIN_ARGUMENTEN  a file to which to write the arguments, one on a line
//   STANDIN_GESTART     a file, or a pipe, to which to add the process's number
//   STANDIN_HANGT       set: never to end; "dicht": with its output closed
//   STANDIN_TEKST       what to print instead of the usual
#include <fcntl.h>
#include <unistd.h>

#include <cstdlib>
#include <cstring>
#include <string>

namespace {

void schrijf(int waar, const std::string& tekst) {
    if (write(waar, tekst.data(), tekst.size()) < 0) std::abort();
}

void schrijfNaar(const char* variabele, const std::string& tekst) {
    const char* const pad = std::getenv(variabele);
    if (!pad) return;
    const int bestand = open(pad, O_WRONLY | O_CREAT | O_APPEND, 0600);
    schrijf(bestand, tekst);
    close(bestand);
}

}  // namespace

int main(int argc, char** argv) {
    std::string argumenten;
    for (int i = 1; i < argc; ++i)
        argumenten.append(argv[i]).append("\n");
    schrijfNaar("STANDIN_ARGUMENTEN", argumenten);

    const char* const hangt = std::getenv("STANDIN_HANGT");
    if (hangt && std::strcmp(hangt, "dicht") == 0) close(STDOUT_FILENO);
    schrijfNaar("STANDIN_GESTART", std::to_string(getpid()) + "\n");
    while (hangt)
        pause();

    const char* const tekst = std::getenv("STANDIN_TEKST");
    schrijf(STDOUT_FILENO, tekst ? tekst : "p1\ncProef\nf3\nn10.0.0.2:50000->1.2.3.4:443\n");
    return 0;
}
