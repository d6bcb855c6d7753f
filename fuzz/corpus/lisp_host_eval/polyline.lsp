(entmake '((0 . "POLYLINE") (66 . 1) (70 . 0)))
(entmake '((0 . "VERTEX") (10 0 0 0))) (entmake '((0 . "VERTEX") (10 5 5 0) (42 . 1.0))) (entmake '((0 . "SEQEND")))
(setq p (entlast)) (entnext p) (vlax-curve-getendparam p) (vlax-curve-getpointatdist p 2.0) (vlax-curve-getclosestpointto p '(1 2 0))
