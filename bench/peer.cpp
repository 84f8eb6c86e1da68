#include "peer.h"

namespace bench {

std::size_t Peer::List(const std::string&, Tasks*) { throw LeftOut(); }
std::size_t Peer::Get(const std::string&, int, Tasks*) { throw LeftOut(); }
std::size_t Peer::Count(const std::string&) { throw LeftOut(); }
std::size_t Peer::ListItems(int, Items*) { throw LeftOut(); }
std::size_t Peer::SearchItems(const std::string&, Items*) { throw LeftOut(); }
int Peer::CreateNew(const Task&) { throw LeftOut(); }
int Peer::CreateWhole(const Task&) { throw LeftOut(); }
void Peer::UpdateShort(const std::string&, const Task&) { throw LeftOut(); }
void Peer::Update(const std::string&, const Task&) { throw LeftOut(); }
void Peer::InUnit(const std::function<void()>&) { throw LeftOut(); }
void Peer::Import(const std::string&, int, const std::string&) { throw LeftOut(); }
void Peer::Export(const std::string&, int, const std::string&) { throw LeftOut(); }

}  // namespace bench
