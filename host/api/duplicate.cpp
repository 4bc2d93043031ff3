#include "api/duplicate.h"

#include "api/bridge.h"
#include "edit/copy.h"

namespace torvel::api {

Status duplicateSubtree(NodeHandle top, NodeHandle& copy) {
    const Node* node = dagNode(top);
    if (!node || node->parents.empty())
        return Status::failure("there is nothing to duplicate");
    CopiedNodes made;
    if (Status status = copyTree(*scene(), top, node->parents.front(), {}, {}, made); !status)
        return status;
    copy = made.front().second;
    return Status::ok();
}

}  // namespace torvel::api
