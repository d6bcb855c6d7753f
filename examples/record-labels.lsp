; Records the labels that are drawn already: every text of the drawing goes to the nearest line or
; polyline, as a diameter label of that pipe.
;
;   pipenote run plan.dxf examples/record-labels.lsp -e "(record-labels)" --in-place
;
; "DN300 PE" is recorded as the value 300 with "DN" before and " PE" behind it.

; Vertices of a line or a light polyline, as a list of points.
(defun curve-points (groups / points)
  (foreach group groups
    (if (or (= (car group) 10)
            (and (= (car group) 11) (= (cdr (assoc 0 groups)) "LINE")))
      (setq points (cons (list (cadr group) (caddr group)) points))))
  (reverse points))

; Distance from a point to the straight piece between a and b.
(defun piece-distance (p a b / dx dy len2 at)
  (setq dx   (- (car b) (car a))
        dy   (- (cadr b) (cadr a))
        len2 (+ (* dx dx) (* dy dy))
        at   (if (equal len2 0.0 1e-12)
               0.0
               (/ (+ (* (- (car p) (car a)) dx) (* (- (cadr p) (cadr a)) dy)) len2))
        at   (max 0.0 (min 1.0 at)))
  (distance p (list (+ (car a) (* at dx)) (+ (cadr a) (* at dy)))))

(defun curve-distance (p points / best)
  (while (cdr points)
    (setq best   (if best
                   (min best (piece-distance p (car points) (cadr points)))
                   (piece-distance p (car points) (cadr points)))
          points (cdr points)))
  best)

; The curve nearest to a point: its name, or nil when there is none. Bulges count as straight.
(defun nearest-curve (p curves / best found d)
  (foreach curve curves
    (setq d (curve-distance p (cdr curve)))
    (if (and d (or (null best) (< d best)))
      (setq best  d
            found (car curve))))
  found)

; ("DN" "300" " PE"): what stands before the first number, the number, and what stands behind.
(defun split-label (text / from to)
  (setq from 1)
  (while (and (<= from (strlen text)) (not (wcmatch (substr text from 1) "#")))
    (setq from (1+ from)))
  (setq to from)
  (while (and (<= to (strlen text)) (wcmatch (substr text to 1) "#,`."))
    (setq to (1+ to)))
  (list (substr text 1 (1- from)) (substr text from (- to from)) (substr text to)))

(defun record-labels (/ set i name groups curves curve parts done failed)
  (setq done   0
        failed 0)
  (if (setq set (ssget "X" '((0 . "LINE,LWPOLYLINE"))))
    (progn
      (setq i 0)
      (while (setq name (ssname set i))
        (setq curves (cons (cons name (curve-points (entget name))) curves)
              i      (1+ i)))))
  (if (and curves (setq set (ssget "X" '((0 . "TEXT,MTEXT")))))
    (progn
      (setq i 0)
      (while (setq name (ssname set i))
        (setq groups (entget name)
              curve  (nearest-curve (list (cadr (assoc 10 groups)) (caddr (assoc 10 groups))) curves)
              parts  (split-label (cdr (assoc 1 groups)))
              i      (1+ i))
        (if (and curve (/= (cadr parts) ""))
          (if (vl-catch-all-error-p
                (vl-catch-all-apply 'dimRec
                  (list (list curve "pcgb") name "pipe_dia"
                        (cadr parts) (car parts) (caddr parts) nil)))
            (setq failed (1+ failed))
            (progn
              (setq done (1+ done))
              (princ (strcat "\n" (cdr (assoc 5 groups)) " \"" (cdr (assoc 1 groups))
                             "\" belongs to " (cdr (assoc 0 (entget curve)))
                             " " (cdr (assoc 5 (entget curve)))))))))))
  (princ (strcat "\n" (itoa done) " labels recorded"
                 (if (> failed 0) (strcat ", " (itoa failed) " refused") "") "\n"))
  (princ))
