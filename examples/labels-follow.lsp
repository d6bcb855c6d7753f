; Labels that follow their pipe, with all fourteen functions. A short drainage pipe is drawn between
; two wells, labelled, and the labels are recorded; then the pipe changes and the labels with it.
;
;   pipenote run plan.dxf examples/labels-follow.lsp --answers examples/labels-follow.txt -o out.dxf
;
; Handlers that draw labels anew are other modules' business: without any, updatedim, updatePipeInfo
; and updateWellInfo find nothing to do.

; What stands for a pipe or a well is any entity with data of the application PIPENOTE.
(regapp "PIPENOTE")

(defun with-data (groups data)
  (entmakex (append groups (list (list -3 (cons "PIPENOTE" data))))))

(defun handle (entity) (cdr (assoc 5 (entget entity))))

(defun well (x y number)
  (with-data (list '(0 . "POINT") (list 10 x y 0.0))
             (list '(1000 . "kind") '(1000 . "drainage-well")
                   '(1000 . "number") (cons 1000 number))))

(defun pipe (from to start-invert end-invert)
  (with-data (list '(0 . "LINE")
                   (cons 10 (cdr (assoc 10 (entget from))))
                   (cons 11 (cdr (assoc 10 (entget to)))))
             (list '(1000 . "kind") '(1000 . "drainage-pipe")
                   '(1000 . "start_node") (cons 1005 (handle from))
                   '(1000 . "end_node") (cons 1005 (handle to))
                   '(1000 . "start_invert") (cons 1040 start-invert)
                   '(1000 . "end_invert") (cons 1040 end-invert))))

(defun label (x y content)
  (entmakex (list '(0 . "TEXT") (list 10 x y 0.0) '(40 . 2.5) (cons 1 content))))

(defun text-of (entity) (cdr (assoc 1 (entget entity))))

(defun draw-arrow-block ()
  (if (not (tblsearch "BLOCK" "FLOW"))
    (progn
      (entmake '((0 . "BLOCK") (2 . "FLOW") (70 . 0) (10 0.0 0.0 0.0)))
      (entmake '((0 . "LINE") (10 -1.0 0.0 0.0) (11 1.0 0.0 0.0)))
      (entmake '((0 . "LINE") (10 0.5 0.3 0.0) (11 1.0 0.0 0.0)))
      (entmake '((0 . "ENDBLK"))))))

(defun say (what value) (princ (strcat what ": ")) (princ value) (princ "\n"))

; What is drawn.
(draw-arrow-block)
(setq upper  (well 0.0 0.0 "W1")
      lower  (well 40.0 0.0 "W2")
      pipe-1 (pipe upper lower 3.2 3.0)
      sizes  (label 15.0 1.0 "?")        ; one text of three pieces
      length-in-mm (label 15.0 -3.0 "?")
      placed (label 1.0 5.0 "W1")
      flow   (entmakex '((0 . "INSERT") (2 . "FLOW") (10 20.0 0.0 0.0) (50 . 0.5))))

; dimRec: the pieces of a text, in their order: name, value, prefix, suffix, separator.
(dimRec (list pipe-1 "pcgb") sizes "pipe_dia" "300" "DN" "" " ")
(dimRec (list pipe-1 "pcgb") sizes "pipe_len" "40" "L=" "m" " ")
(dimRec (list pipe-1 "pcgb") sizes "pipe_iii" "5" "i=" "‰" "")
(dimRec (list pipe-1 "xdgj") length-in-mm "pipe_len_mm" "40000" "" "mm" "")
; dimGeRec: an entity as a whole, here beside the pieces of the label of a well.
(dimGeRec (list upper "bzjg") placed)
; dimUserRec: what has no entity, here how that label was placed.
(foreach item '(("zh_mc" "K0+020") ("ang_yx" "0.7854") ("dist_jgbz" "12.5")
                ("ang_wz" "0") ("czfx_jgbz" "NULL") ("xfdh" "1"))
  (dimUserRec (list upper "bzjg") (car item) (cadr item)))
; The flow arrow is the item "jt".
(dimRec (list pipe-1 "xzgj") flow "jt" "->" nil nil nil)

; dimupdate: a new value, in every text that shows it. The length in millimetres follows the length,
; the slope per mille the slope; the settings say how many decimals each has.
(dimupdate pipe-1 "pipe_len" "41.52")
(dimupdate pipe-1 "pipe_i" "0.00618")
(say "length and slope" (text-of sizes))
(say "in mm" (text-of length-in-mm))
; With T its prefix, suffix and separator are replaced too.
(dimupdate pipe-1 "pipe_dia" "400" T "De" "" ", ")
(say "diameter" (text-of sizes))

; updatedim, updatePipeInfo, updateWellInfo: ask the handlers of one type, or of all.
(updatedim "pcgb" pipe-1)
(updatePipeInfo pipe-1)
(updateWellInfo upper)

; updateJtDirection: the arrow along the pipe, from the higher invert to the lower.
(updateJtDirection pipe-1)
(say "arrow" (angtos (cdr (assoc 50 (entget flow))) 0 2))

; jgbzUpInfo: how the label of a well was placed.
(say "placed" (vl-prin1-to-string (jgbzUpInfo upper)))

; getDimLocalStyle: the drawing standard of the installation.
(say "standard" (getDimLocalStyle))

; t1: asks for entities, records a trial flow on each and updates it. The answers file says "last".
(t1)

; dimDel: the labels of one type. dimDelAllInfo: forgets all and leaves the labels drawn.
; dimDelAll: erases all.
(dimDel pipe-1 "xdgj")
(dimDelAllInfo pipe-1)
(dimDelAll upper)
(say "left of the labels"
     (mapcar '(lambda (entity) (if (entget entity) 1 0)) (list sizes length-in-mm placed flow)))
(princ)
