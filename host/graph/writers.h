#pragma once

#include <string>
#include <vector>

#include "graph/plug.h"

/// Writers: nodes that write plain number plugs of other nodes (an ikHandle writes the rotates of
/// its chain). These ties dirty and order like connections, and no listing, walk or file sees them.
namespace torvel {

class Scene;
struct Node;

/// What one writer says about itself. Everything is found anew when connections or the hierarchy
/// have changed.
struct WriterDeclaration {
    struct Written {
        Plug plug;         ///< a number of another node
        double own = 0.0;  ///< its value by hand when the tie is made
    };
    struct Watched {
        NodeHandle node;
        AttrIndex output = kNoAttr;  ///< one output of the node; kNoAttr: any of its inputs
    };
    AttrIndex output = kNoAttr;  ///< the writer's output whose evaluation writes the plugs
    std::vector<Written> writes;
    std::vector<Plug> reads;  ///< of other nodes: brought up to date before the writer is evaluated
    std::string notice;       ///< why the writer does nothing; shown once as a warning
    std::vector<Watched> watches;  ///< of other nodes: a change there makes the writer dirty

    /// The same ties; values by hand do not count.
    bool sameAs(const WriterDeclaration& other) const;
};

/// Finds what a writer writes at present; an empty declaration when it cannot work.
using DeclareWrites = void (*)(const Scene& scene, const Node& writer, WriterDeclaration& out);

/// The ties of one node, at both ends; nodes without any have none.
struct WriterLinks {
    struct Written {
        AttrIndex attr;
        Plug writer;
        double own;  ///< value set by hand, kept while the writer shows its own result
    };
    struct Reader {
        Plug writer;
        AttrIndex output;  ///< as in WriterDeclaration::Watched
    };
    std::vector<Written> written;  ///< of this node
    std::vector<Reader> readers;   ///< writers that look at this node
    AttrIndex output = kNoAttr;    ///< of a writer
    std::vector<Plug> reads;       ///< of a writer
    std::vector<Plug> writes;      ///< of a writer; the compound where all its children are written

    const Written* find(AttrIndex attr) const;  ///< null when nobody writes it
};

/// All writers of a scene with what they said last.
struct WriterTable {
    std::vector<NodeHandle> writers;          ///< by creation
    std::vector<WriterDeclaration> declared;  ///< one for each writer at the last look
    std::vector<NodeHandle> linked;           ///< nodes that bear links
};

}  // namespace torvel
