#include "families/frozen/sxb_stable_catalogue.h"

namespace sable_lanecfg {

const register_catalogue& sxbStableCatalogue() {
    static const register_catalogue catalogue = [] {
        register_catalogue all = sxbStableRxCatalogue();
        all.append(sxbStableTxCatalogue());
        all.append(sxbStablePllCatalogue());
        return all;
    }();
    return catalogue;
}

}  // namespace sable_lanecfg
