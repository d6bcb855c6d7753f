;;; IMPORTNET -- draws a water network from its EPANET file
;;;
;;; Pipes become light polylines on layer W-PIPE (pump and valve links on W-LINK), nodes become
;;; blocks W-NODE with their number as attribute on layer W-NODE.  Every pipe carries its number,
;;; length and diameter as extended data of the application NETIMPORT.

;; Words of a line, comment cut off
(defun net:words (line / i c word words)
  (setq i 1 word "")
  (while (and (<= i (strlen line))
              (/= (setq c (substr line i 1)) ";"))
    (if (or (= c " ") (= c "\t"))
      (if (/= word "")
        (setq words (cons word words)
              word  ""))
      (setq word (strcat word c)))
    (setq i (1+ i)))
  (if (/= word "") (setq words (cons word words)))
  (reverse words))

;; ((section line-words ...) ...)
(defun net:read (file / f line words name sections rows)
  (if (setq f (open file "r"))
    (progn
      (while (setq line (read-line f))
        (setq words (net:words line))
        (cond
          ((null words))
          ((= (substr (car words) 1 1) "[")
           (if name (setq sections (cons (cons name (reverse rows)) sections)))
           (setq name (strcase (vl-string-trim "[]" (car words)))
                 rows nil))
          (name (setq rows (cons words rows)))))
      (close f)
      (if name (setq sections (cons (cons name (reverse rows)) sections)))
      (reverse sections))))

(defun net:section (name) (cdr (assoc name net:data)))

;; A layer, unless there is one
(defun net:layer (name color)
  (if (not (tblsearch "LAYER" name))
    (entmake (list '(0 . "LAYER") '(100 . "AcDbSymbolTableRecord")
                   '(100 . "AcDbLayerTableRecord")
                   (cons 2 name) '(70 . 0) (cons 62 color) '(6 . "Continuous")))))

;; The node symbol: a circle and its number
(defun net:symbol ()
  (if (not (tblsearch "BLOCK" "W-NODE"))
    (progn
      (entmake '((0 . "BLOCK") (2 . "W-NODE") (70 . 2) (10 0.0 0.0 0.0)))
      (entmake '((0 . "CIRCLE") (8 . "0") (10 0.0 0.0 0.0) (40 . 0.15)))
      (entmake '((0 . "ATTDEF") (8 . "0") (10 0.25 0.25 0.0) (40 . 0.3) (1 . "")
                 (3 . "Node number") (2 . "NO") (70 . 0)))
      (entmake '((0 . "ENDBLK"))))))

(defun net:pipe (layer points data)
  (entmake
    (append
      (list '(0 . "LWPOLYLINE") '(100 . "AcDbEntity") (cons 8 layer)
            '(100 . "AcDbPolyline") (cons 90 (length points)) '(70 . 0))
      (mapcar '(lambda (p) (list 10 (car p) (cadr p))) points)
      (if data (list (list -3 (cons "NETIMPORT" data)))))))

(defun net:node (name point)
  (entmake (list '(0 . "INSERT") '(66 . 1) '(8 . "W-NODE") '(2 . "W-NODE") (cons 10 point)))
  (entmake (list '(0 . "ATTRIB") '(8 . "W-NODE") (cons 10 (mapcar '+ point '(0.25 0.25 0.0)))
                 '(40 . 0.3) (cons 1 name) '(2 . "NO") '(70 . 0)))
  (entmake '((0 . "SEQEND"))))

(defun c:importnet (/ file net:data places bends pipe p1 p2 count total)
  (if (and (setq file (getfiled "Network to draw" "" "inp" 0))
           (setq net:data (net:read file)))
    (progn
      (regapp "NETIMPORT")
      (net:layer "W-PIPE" 5)
      (net:layer "W-LINK" 1)
      (net:layer "W-NODE" 3)
      (net:symbol)
      (setq places (mapcar '(lambda (r) (list (car r) (atof (cadr r)) (atof (caddr r)) 0.0))
                           (net:section "COORDINATES"))
            count 0
            total 0.0)
      (foreach pipe (net:section "PIPES")
        (setq p1 (cdr (assoc (nth 1 pipe) places))
              p2 (cdr (assoc (nth 2 pipe) places))
              bends nil)
        (foreach row (net:section "VERTICES")
          (if (= (car row) (car pipe))
            (setq bends (cons (list (atof (cadr row)) (atof (caddr row)) 0.0) bends))))
        (if (and p1 p2)
          (progn
            (net:pipe "W-PIPE" (append (list p1) (reverse bends) (list p2))
                      (list (cons 1000 (car pipe))
                            (cons 1040 (atof (nth 3 pipe)))
                            (cons 1040 (atof (nth 4 pipe)))))
            (setq count (1+ count)
                  total (+ total (atof (nth 3 pipe)))))
          (princ (strcat "\nPipe " (car pipe) " has an end without coordinates."))))
      (foreach link (append (net:section "PUMPS") (net:section "VALVES"))
        (setq p1 (cdr (assoc (nth 1 link) places))
              p2 (cdr (assoc (nth 2 link) places)))
        (if (and p1 p2) (net:pipe "W-LINK" (list p1 p2) nil)))
      (foreach node places (net:node (car node) (cdr node)))
      (princ (strcat "\n" (itoa count) " pipes, " (rtos total 2 1) " ft, "
                     (itoa (length places)) " nodes.")))
    (princ "\nNothing read."))
  (princ))
