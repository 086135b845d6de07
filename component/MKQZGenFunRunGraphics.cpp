#include "component/MKQZGenFunRun.h"

#include "common/ApplicationReference.h"
#include "graphics/QZCopySelected.h"
#include "graphics/QZDerivedGraphics.h"
#include "graphics/QZGr2Shape.h"

namespace qz {

bool MKQZGenFunRun::QZ_FeaturesToGraphicsRun(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                             Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_FeaturesToGraphicsRun(pApp, pFeatureCursor, sName, lCount);
}

bool MKQZGenFunRun::QZ_CentroidGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                        Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_CentroidGraphics(pApp, pFeatureCursor, sName, lCount);
}

bool MKQZGenFunRun::QZ_VertexGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                      Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_VertexGraphics(pApp, pFeatureCursor, sName, lCount);
}

bool MKQZGenFunRun::QZ_EnvelopeGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                        Application& pApp, bool bSingle) noexcept {
    setApplication(pApp);
    return qz::QZ_EnvelopeGraphics(pApp, pFeatureCursor, sName, lCount, bSingle);
}

bool MKQZGenFunRun::QZ_ConvexGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                      Application& pApp, bool bSingle) noexcept {
    setApplication(pApp);
    return qz::QZ_ConvexGraphics(pApp, pFeatureCursor, sName, lCount, bSingle);
}

bool MKQZGenFunRun::QZ_BoundingCircleGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                              Application& pApp, bool bSingle) noexcept {
    setApplication(pApp);
    return qz::QZ_BoundingCircleGraphics(pApp, pFeatureCursor, sName, lCount, bSingle);
}

bool MKQZGenFunRun::QZ_BoundingRectangleGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                                 Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_BoundingRectangleGraphics(pApp, pFeatureCursor, sName, lCount);
}

bool MKQZGenFunRun::QZ_EACircleGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                        Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_EACircleGraphics(pApp, pFeatureCursor, sName, lCount);
}

bool MKQZGenFunRun::QZ_BufferGraphics(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                      double dBuf, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_BufferGraphics(pApp, pFeatureCursor, sName, lCount, dBuf);
}

bool MKQZGenFunRun::QZ_GraphicPointAtDistance(FeatureCursor& pFeatureCursor, std::string& sName, double dSplitLength,
                                              const Envelope*, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_GraphicPointAtDistance(pApp, pFeatureCursor, sName, dSplitLength);
}

bool MKQZGenFunRun::QZ_RandomGraphicsPg(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                        std::int32_t lNumPoints, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_RandomGraphicsPg(pApp, pFeatureCursor, sName, lCount, lNumPoints);
}

bool MKQZGenFunRun::QZ_RandomGraphicsPl(FeatureCursor& pFeatureCursor, std::string& sName, std::int32_t lCount,
                                        std::int32_t lNumPoints, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_RandomGraphicsPl(pApp, pFeatureCursor, sName, lCount, lNumPoints);
}

bool MKQZGenFunRun::QZ_Gr2ShapeDo(FeatureLayer& pFLayer, RefreshArea& pRefresh, const std::string& sIn1,
                                  const std::string& sOut, std::int16_t iPriority, const std::string& sPlA,
                                  const std::string& sPg2Pl, const std::string& sPl2Pg, bool bSel, std::int32_t lCount,
                                  double dBuff, bool bDelete, bool bOver, Application& pApp) noexcept {
    setApplication(pApp);
    return qz::QZ_Gr2ShapeDo(pApp, pFLayer, pRefresh,
                             {sIn1, sOut, iPriority, sPlA, sPg2Pl, sPl2Pg, bSel, dBuff, bDelete, bOver}, lCount);
}

bool MKQZGenFunRun::QZ_CopySelectedFromLayer(FeatureLayer& pFLayer, const std::string& sSourceLayerName,
                                             RefreshArea& pRefresh, const Envelope* pEnv, const std::string& sPlPlA,
                                             const std::string& sPlPgA, const std::string& sPgPlA,
                                             const std::string& sPgPgA, double dBuf, Application& pApp, bool bOver,
                                             const std::int32_t* lCount) noexcept {
    setApplication(pApp);
    return qz::QZ_CopySelectedFromLayer(pApp, pFLayer, sSourceLayerName, pRefresh, pEnv,
                                        {sPlPlA, sPlPgA, sPgPlA, sPgPgA, dBuf, bOver},
                                        lCount ? std::optional(*lCount) : std::nullopt);
}

} // namespace qz
