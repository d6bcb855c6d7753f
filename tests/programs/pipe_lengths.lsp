; PL.LSP  pipe lengths by layer
; Adds up LINE, ARC, LWPOLYLINE, POLYLINE, CIRCLE, SPLINE and ELLIPSE of every layer

(vl-load-com)

(defun c:PL ( / ss i en len lay tab old name width )
  (setq ss (ssget "_X" '((0 . "LINE,ARC,*POLYLINE,CIRCLE,SPLINE,ELLIPSE") (410 . "Model"))))
  (if (null ss)
    (prompt "\nNo pipes in this drawing.")
    (progn
      (setq i 0)
      (repeat (sslength ss)
        (setq en  (ssname ss i)
              i   (1+ i)
              lay (cdr (assoc 8 (entget en)))
              len (vl-catch-all-apply
                    '(lambda () (vlax-curve-getdistatparam en (vlax-curve-getendparam en))) nil))
        (if (and len (not (vl-catch-all-error-p len)))
          (if (setq old (assoc lay tab))
            (setq tab (subst (list lay (1+ (cadr old)) (+ len (caddr old))) old tab))
            (setq tab (cons (list lay 1 len) tab)))))
      (setq tab   (vl-sort tab '(lambda (a b) (< (strcase (car a)) (strcase (car b)))))
            width (apply 'max (mapcar '(lambda (r) (strlen (car r))) tab)))
      (foreach row tab
        (setq name (car row))
        (while (< (strlen name) width) (setq name (strcat name " ")))
        (princ (strcat "\n" name "  " (pad (itoa (cadr row)) 5) "  " (pad (rtos (caddr row) 2 3) 14))))
      (princ (strcat "\ntotal " (rtos (apply '+ (mapcar 'caddr tab)) 2 3)))))
  (princ))

(defun pad ( s n )
  (while (< (strlen s) n) (setq s (strcat " " s)))
  s)
